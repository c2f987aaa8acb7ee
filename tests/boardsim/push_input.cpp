// push_input: tries to put a line into the input of the terminal, by every kind of system call of the
// processor. Prints the kernel's answer to each.

#include <cerrno>
#include <csetjmp>
#include <csignal>
#include <cstring>
#include <iostream>
#include <string_view>

#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr auto highBits = static_cast<unsigned long>(0x5a5a5a5a00000000ULL);  // none if it has 32

/// The result of a call that the machine does not have.
constexpr long noSuchCalls = -2;

/// A byte at an address below 4 GiB.
const char* lowByte(char value) {
#ifdef MAP_32BIT
    constexpr int place = MAP_32BIT;
#else
    constexpr int place = 0;
#endif
    constexpr std::size_t length = 4096;
    static auto* const byte = static_cast<char*>(
        ::mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | place, -1, 0));
    *byte = value;
    return byte;
}

long plain(unsigned long request, const char* byte) {
    return ::syscall(SYS_ioctl, STDIN_FILENO, request, byte);
}

long withHighBits(unsigned long request, const char* byte) {
    return ::syscall(SYS_ioctl, STDIN_FILENO, request | highBits, byte);
}

#ifdef __x86_64__
sigjmp_buf beforeCall;

/// The call of 32-bit programs. A kernel without support for them answers with a signal.
long by32Bits(unsigned long request, const char* byte) {
    constexpr long ioctlNumber = 54;
    std::signal(SIGSEGV, [](int) { siglongjmp(beforeCall, 1); });
    if (sigsetjmp(beforeCall, 1) != 0) {
        return noSuchCalls;
    }
    long result = ioctlNumber;
    asm volatile("int $0x80"
                 : "+a"(result)
                 : "b"(static_cast<long>(STDIN_FILENO)), "c"(request), "d"(byte)
                 : "memory", "r8", "r9", "r10", "r11");
    errno = result < 0 ? static_cast<int>(-result) : 0;
    return result < 0 ? -1 : result;
}

/// The call of programs with 64-bit registers and 32-bit pointers.
long byX32(unsigned long request, const char* byte) {
    constexpr long ioctlNumber = 0x40000000 + 514;
    return ::syscall(ioctlNumber, STDIN_FILENO, request, byte);
}
#endif

struct Way {
    std::string_view name;
    long (*push)(unsigned long request, const char* byte);
};

constexpr Way ways[] = {
    {"plain", plain},
    {"with high bits", withHighBits},
#ifdef __x86_64__
    {"by 32-bit calls", by32Bits},
    {"by x32 calls", byX32},
#endif
};

/// Prints the kernel's answer to one request.
void tryOne(const Way& way, const char* what, unsigned long request, char byte) {
    const long result = way.push(request, lowByte(byte));
    if (result != noSuchCalls) {
        std::cout << what << ' ' << way.name << ": " << std::strerror(result == 0 ? 0 : errno) << '\n';
    }
}

}  // namespace

int main() {
    constexpr char pasteSelection = 3;  // of a virtual console
    for (const Way& way : ways) {
        tryOne(way, "typing", TIOCSTI, 'x');
        tryOne(way, "typing", TIOCSTI, '\n');
        tryOne(way, "pasting", TIOCLINUX, pasteSelection);
    }
}
