#include "LogEntry.hpp"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <span>

namespace HostBoard {

LogEntry::LogEntry(int level, const char* tag, const char* format, std::va_list arguments) {
    appendTime();
    append(" %d %s: ", level, tag == nullptr ? "" : tag);
    if (format != nullptr) {
        appendList(format, arguments);
    }
    finishLine();
}

void LogEntry::append(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    appendList(format, arguments);
    va_end(arguments);
}

void LogEntry::appendList(const char* format, std::va_list arguments) {
    const std::size_t room = bytes.size() - size;  // with the zero that the line end replaces
    const int length = std::vsnprintf(bytes.data() + size, room, format, arguments);
    if (length > 0) {
        size += std::min(static_cast<std::size_t>(length), room - 1);
    }
}

// Avoids gmtime(), because a forked child may never get the lock of its time zone data. Avoids
// system_clock::now(), because it can overflow in 2038 on 32-bit processors.
void LogEntry::appendTime() {
    using namespace std::chrono;
    timespec clock{};
    ::clock_gettime(CLOCK_REALTIME, &clock);
    const sys_time<microseconds> now(seconds(clock.tv_sec) + floor<microseconds>(nanoseconds(clock.tv_nsec)));
    const auto today = floor<days>(now);
    const year_month_day date(today);
    const hh_mm_ss time(now - today);
    append("%04d-%02u-%02uT%02d:%02d:%02d.%06dZ", static_cast<int>(date.year()),
           static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
           static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
           static_cast<int>(time.seconds().count()), static_cast<int>(time.subseconds().count()));
}

void LogEntry::finishLine() {
    while (size > 0 && bytes[size - 1] == '\n') {
        --size;
    }
    const auto breaksLine = [](char byte) { return byte == '\n' || byte == '\0'; };
    std::ranges::replace_if(std::span(bytes).first(size), breaksLine, ' ');
    bytes[size++] = '\n';
}

}  // namespace HostBoard
