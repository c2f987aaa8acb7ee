#include "RecordedLog.hpp"

#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string_view>

namespace {

constexpr unsigned wholeLog = 2U << 20;
constexpr AppID application = 3;
constexpr unsigned readMode = 5;

/// The parts of a line except its text.
constexpr std::size_t frame = std::string_view("2031-05-17T08:15:00.123456Z 0 Test: \n").size();

}  // namespace

RecordedLog::RecordedLog(const char* logName) : log(SmLog::getClientInstance(logName, application)) {
    if (log == nullptr) {
        throw std::runtime_error(std::string("no shared-memory log ") + logName);
    }
    std::filesystem::resize_file(std::string("/dev/shm/") + logName, 0);
    text();  // allocates its memory again while this process may
}

void RecordedLog::write(unsigned count, std::size_t size) {
    constexpr unsigned keptForSure = wholeLog / largest / 2;
    for (unsigned i = 0; i < count; ++i) {
        writeEntry(size);
        if (i % keptForSure == 0) {
            text();
        }
    }
    text();
}

const std::string& RecordedLog::text() {
    std::string news(wholeLog, '\0');
    position = log->read(news.data(), wholeLog, 0, position, readMode);
    news.resize(std::strlen(news.c_str()));
    recorded.append(news);
    return recorded;
}

void RecordedLog::writeEntry(std::size_t size) {
    std::string entry = "entry " + std::to_string(next++) + " ";
    entry.resize(size - frame, 'x');
    log->write(0, "Test", "%s", entry.c_str());
}
