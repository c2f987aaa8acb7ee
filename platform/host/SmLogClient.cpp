#include "SmLogClient.hpp"

#include <cerrno>
#include <span>
#include <utility>

#include "LogEntry.hpp"

namespace HostBoard {

SmLogClient::SmLogClient(std::unique_ptr<SharedLog> opened) : log(std::move(opened)) {
}

void SmLogClient::write(int level, const char* tag, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    vwrite(level, tag, format, arguments);
    va_end(arguments);
}

void SmLogClient::vwrite(int level, const char* tag, const char* format, std::va_list arguments) {
    const int reason = errno;
    log->append(LogEntry(level, tag, format, arguments).line());
    errno = reason;
}

unsigned SmLogClient::read(char* buffer, unsigned size, AppID, unsigned start, unsigned) {
    const std::span<char> room = buffer == nullptr ? std::span<char>{} : std::span<char>{buffer, size};
    const std::optional<LogRing::Excerpt> excerpt =
        log->read(room.empty() ? room : room.first(room.size() - 1), start);
    if (!room.empty()) {
        room[excerpt ? excerpt->length : 0] = '\0';
    }
    if (!excerpt) {
        return start;
    }
    if (excerpt->late) {
        lateReads.add(start, excerpt->end);
    }
    return excerpt->end;
}

bool SmLogClient::overlap(unsigned lastPosition, unsigned newPosition) {
    return lateReads.contains(lastPosition, newPosition);
}

}  // namespace HostBoard
