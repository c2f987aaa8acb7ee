#include "Archiver.hpp"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <stdexcept>

#include "TestFiles.hpp"

namespace fs = std::filesystem;

namespace {

constexpr std::chrono::seconds patience{120};
constexpr int signalBase = 128;

}  // namespace

Archiver::Archiver(Pace& ofItsSleeps)
    : pace(ofItsSleeps), process({"korvel", "archive"}, pace.surroundings()) {
    pace.awaitSleep(patience);
}

void Archiver::goOn() {
    pace.endSleep();
    pace.awaitSleep(patience);
}

Archiver::Footprint Archiver::footprint() const {
    const std::string folder = "/proc/" + std::to_string(process.pid());
    Footprint result;
    for (const std::string& line : linesOfFile(folder + "/status")) {
        if (line.starts_with("RssAnon:")) {
            result.memory = std::stoul(line.substr(line.find_first_of("0123456789")));
        }
    }
    for (const auto& descriptor : fs::directory_iterator(folder + "/fd")) {
        std::error_code closed;
        const fs::path file = fs::read_symlink(descriptor, closed);
        result.descriptors += closed || Pace::isFifo(file) ? 0 : 1;
    }
    return result;
}

unsigned Archiver::failedCommands() const {
    constexpr std::string_view failure = " exited with error, exit code: ";
    const std::string text = process.outSoFar();
    unsigned count = 0;
    for (std::size_t at = text.find(failure); at != std::string::npos; at = text.find(failure, at + 1)) {
        ++count;
    }
    return count;
}

void Archiver::end() {
    ::kill(process.pid(), SIGTERM);
    if (process.wait().status != signalBase + SIGTERM) {
        throw std::runtime_error("SIGTERM does not end the archiver");
    }
}
