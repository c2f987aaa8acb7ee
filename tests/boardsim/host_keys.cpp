// host_keys: tries to see and to change the keys that the kernel holds for the session, and prints what it
// said.

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
