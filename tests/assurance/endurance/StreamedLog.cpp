#include "StreamedLog.hpp"

#include <cstring>
#include <filesystem>
#include <stdexcept>

namespace {

constexpr AppID application = 3;
constexpr unsigned readMode = 5;
constexpr std::size_t known = 2 * StreamedLog::kept;

/// A number that looks random and depends on nothing but `number`.
std::uint64_t scattered(std::uint64_t number) {
    return (number + 1) * 0x9E3779B97F4A7C15U ^ (number >> 3);
}

}  // namespace

StreamedLog::StreamedLog(const char* logName)
    : log(SmLog::getClientInstance(logName, application)), buffer(kept, '\0') {
    if (log == nullptr) {
        throw std::runtime_error(std::string("no shared-memory log ") + logName);
    }
    std::filesystem::resize_file(std::string("/dev/shm/") + logName, 0);
    update();  // allocates its memory again while this process may
}

void StreamedLog::write(std::size_t bytes) {
    constexpr unsigned keptForSure = kept / largest / 2;
    const std::uint64_t enough = end() + bytes;
    while (end() < enough) {
        const std::uint64_t before = end();
        std::size_t written = 0;
        for (unsigned i = 0; i < keptForSure && before + written < enough; ++i) {
            writeEntry();
            written += largest / 2;  // on average
        }
        update();
    }
}

void StreamedLog::update() {
    const unsigned before = position;
    latest += readFrom(before);
    if (log->overlap(before, position)) {
        throw std::runtime_error("somebody else wrote more than the log keeps");
    }
    if (latest.size() > 2 * known) {
        latest.erase(0, latest.size() - known);
    }
}

std::uint64_t StreamedLog::oldest() {
    const unsigned here = position;
    const std::uint64_t endBefore = endOffset;
    const std::size_t size = readFrom(0).size();
    position = here;
    endOffset = endBefore;
    return endBefore - size;
}

std::string_view StreamedLog::between(std::uint64_t from, std::uint64_t to) const {
    if (from > to || to > endOffset || endOffset - from > latest.size()) {
        throw std::runtime_error("bytes " + std::to_string(from) + " to " + std::to_string(to) +
                                 " of the log are not known");
    }
    return std::string_view(latest).substr(latest.size() - (endOffset - from), to - from);
}

/// The digits differ from entry to entry, so that the text cannot be compressed to nothing.
void StreamedLog::writeEntry() {
    const std::uint64_t random = scattered(number);
    std::string text = "entry " + std::to_string(number++);
    for (std::uint64_t i = 0; i < 4; ++i) {
        text += " " + std::to_string(scattered(random + i));
    }
    text.resize(text.size() + random % (largest - 200), 'x');
    log->write(0, "Test", "%s", text.c_str());
}

std::string_view StreamedLog::readFrom(unsigned start) {
    buffer[0] = '\0';
    position = log->read(buffer.data(), static_cast<unsigned>(buffer.size()), 0, start, readMode);
    const std::string_view text(buffer.data(), ::strnlen(buffer.data(), buffer.size()));
    endOffset += text.size();
    return text;
}
