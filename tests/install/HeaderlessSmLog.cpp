#include "HeaderlessSmLog.hpp"

#include <array>
#include <cstdarg>
#include <cstdio>

// The binary interface of the board's log library, written by hand without the platform's headers. A call
// reaches the slot that the caller was compiled for, whatever name the header gives the operation.

namespace {

/// A client of a log, as callers see it: the first word points to the table of operations.
struct Client {
    void* const* operations;
};

std::array<char, 256> call{};

__attribute__((format(printf, 1, 2))) void record(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): va_start has initialized it
    std::vsnprintf(call.data(), call.size(), format, arguments);
    va_end(arguments);
}

__attribute__((format(printf, 4, 0))) void recordEntry(int slot, int level, const char* tag,
                                                       const char* format, std::va_list arguments) {
    std::array<char, 128> text{};
    std::vsnprintf(text.data(), text.size(), format, arguments);
    record("slot %d: level %d, tag %s, text %s", slot, level, tag, text.data());
}

__attribute__((format(printf, 4, 5))) void slot0(Client* /*self*/, int level, const char* tag,
                                                 const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    recordEntry(0, level, tag, format, arguments);
    va_end(arguments);
}

__attribute__((format(printf, 4, 0))) void slot1(Client* /*self*/, int level, const char* tag,
                                                 const char* format, std::va_list arguments) {
    recordEntry(1, level, tag, format, arguments);
}

unsigned slot2(Client* /*self*/, char* buffer, unsigned size, unsigned app, unsigned start, unsigned mode) {
    record("slot 2: size %u, app %u, start %u, mode %u", size, app, start, mode);
    std::snprintf(buffer, size, "text of the log");
    return start + 1;
}

bool slot3(Client* /*self*/, unsigned lastPosition, unsigned newPosition) {
    record("slot 3: from %u to %u", lastPosition, newPosition);
    return lastPosition > newPosition;
}

template <typename Function>
void* address(Function* function) {
    return reinterpret_cast<void*>(function);
}

}  // namespace

const char* headerlessSmLogCall() {
    return call.data();
}

/// SmLog::getClientInstance(), by its mangled name.
extern "C" Client* getClientInstance(const char* name, unsigned app) asm("_ZN5SmLog17getClientInstanceEPKcj");

Client* getClientInstance(const char* name, unsigned app) {
    static const std::array<void*, 4> operations{address(slot0), address(slot1), address(slot2),
                                                 address(slot3)};
    static Client client{operations.data()};
    record("client of %s, app %u", name, app);
    return &client;
}
