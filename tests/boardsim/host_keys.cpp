// host_keys: tries to read and to change the kernel's keys of the session, and prints the kernel's answers.

#include <cerrno>
#include <cstring>
#include <iostream>

#include <linux/keyctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

void print(const char* call, long result) {
    std::cout << call << ": " << std::strerror(result == -1 ? errno : 0) << '\n';
}

}  // namespace

int main() {
    constexpr int create = 1;
    print("keyctl", ::syscall(SYS_keyctl, KEYCTL_GET_KEYRING_ID, KEY_SPEC_SESSION_KEYRING, create));
    print("add_key", ::syscall(SYS_add_key, "user", "board", "x", 1, KEY_SPEC_SESSION_KEYRING));
    print("request_key", ::syscall(SYS_request_key, "user", "board", nullptr, KEY_SPEC_SESSION_KEYRING));
}
