// stand_in_probe LOG: uses each of the stand-in libraries once, only through their interfaces, and prints the
// results.

#include <array>
#include <iostream>

#include "SmLog.hpp"
#include "Vask.h"

int main(int /*argc*/, char** argv) {
    std::array<char, 4096> text{};
    if (SmLog* const log = SmLog::getClientInstance(argv[1], 3)) {
        log->write(6, "Probe", "one");
        log->write(6, "Probe", "two");
        log->read(text.data(), text.size(), 3, 0, 0);
    }
    std::cout << text.data();

    int secure = -1;
    std::cout << "secure error " << vask_security_is_secure_env(&secure) << ", secure " << secure << '\n';

    void* memory = nullptr;
    std::cout << "translation error " << vask_cma_phy_to_virt(0x80000000, &memory) << '\n';
}
