// The least that a program with korvel's libraries does: korvel --help is compared with it.

#include <iostream>

int main() {
    std::cout << "one line\n";
}
