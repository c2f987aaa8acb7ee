// A library for LD_PRELOAD: lets memory allocations of one program fail. Programs that this program executes
// are not affected. The environment says which allocations fail:
// - FAILING_MEMORY=FIRST-LAST: their numbers; main() starts with 1
// - FAILING_MEMORY_COUNT=PATH: a file that gets the result when the program ends. It contains the number of
//   allocations, the number of those that failed, and the callers of the first one that failed, as offsets.

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <span>

#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <unistd.h>

// The allocator of glibc, under the names that no library replaces.
extern "C" {
void* glibcMalloc(std::size_t size) __asm__("__libc_malloc");
void* glibcCalloc(std::size_t count, std::size_t size) __asm__("__libc_calloc");
void* glibcRealloc(void* old, std::size_t size) __asm__("__libc_realloc");
}

namespace {

using Main = int (*)(int, char**, char**);
Main programMain = nullptr;

bool counts = false;
unsigned long first = 0;
unsigned long last = 0;
unsigned long number = 0;
unsigned long failures = 0;
std::array<void*, 32> stack{};  // of the first failure
std::size_t stackSize = 0;

/// Offsets in the program's file, which addr2line understands. Other files are left out.
void printStack(int file) {
    Dl_info program{};
    ::dladdr(reinterpret_cast<void*>(programMain), &program);
    for (void* const caller : std::span(stack).first(stackSize)) {
        Dl_info info{};
        if (::dladdr(caller, &info) != 0 && info.dli_fbase == program.dli_fbase) {
            ::dprintf(file, " %#tx", static_cast<char*>(caller) - static_cast<char*>(info.dli_fbase));
        }
    }
}

bool fails() {
    if (!counts) {
        return false;
    }
    ++number;
    if (number < first || number > last) {
        return false;
    }
    if (++failures == 1) {
        counts = false;  // backtrace() allocates
        stackSize = static_cast<std::size_t>(::backtrace(stack.data(), static_cast<int>(stack.size())));
        counts = true;
    }
    errno = ENOMEM;
    return true;
}

int countingMain(int argc, char** argv, char** environment) {
    if (const char* const range = std::getenv("FAILING_MEMORY")) {
        std::sscanf(range, "%lu-%lu", &first, &last);  // NOLINT(cert-err34-c): our own numbers
    }
    ::unsetenv("LD_PRELOAD");
    counts = true;
    return programMain(argc, argv, environment);
}

[[gnu::destructor]] void end() {
    counts = false;
    const char* const path = std::getenv("FAILING_MEMORY_COUNT");
    const int file = path == nullptr ? -1 : ::open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (file != -1) {
        ::dprintf(file, "%lu %lu", number, failures);
        printStack(file);
        ::close(file);
    }
}

}  // namespace

using Start = int(Main main, int argc, char** argv, void (*init)(), void (*fini)(), void (*loaderEnd)(),
                  void* stackEnd);

extern "C" {

// glibc's first function of a program runs the constructors, then main().
Start startProgram __asm__("__libc_start_main");

int startProgram(Main main, int argc, char** argv, void (*init)(), void (*fini)(), void (*loaderEnd)(),
                 void* stackEnd) {
    programMain = main;
    auto* const start = reinterpret_cast<Start*>(::dlsym(RTLD_NEXT, "__libc_start_main"));
    return start(countingMain, argc, argv, init, fini, loaderEnd, stackEnd);
}

void* malloc(std::size_t size) {
    return fails() ? nullptr : glibcMalloc(size);
}

void* calloc(std::size_t nmemb, std::size_t size) {
    return fails() ? nullptr : glibcCalloc(nmemb, size);
}

void* realloc(void* ptr, std::size_t size) {
    return fails() ? nullptr : glibcRealloc(ptr, size);
}
}
