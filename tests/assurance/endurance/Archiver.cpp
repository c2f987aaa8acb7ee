#include "Archiver.hpp"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <iterator>
#include <stdexcept>

#include "TestFiles.hpp"

namespace {

constexpr std::chrono::seconds patience{120};
constexpr int signalBase = 128;

}  // namespace

Archiver::Archiver(Pace& pace) : process({"korvel", "archive"}, pace.surroundings()) {
    pace.awaitSleep(patience);
}

void Archiver::goOn(Pace& pace) {
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
    const std::filesystem::directory_iterator descriptors(folder + "/fd");
    result.descriptors =
        static_cast<std::size_t>(std::distance(begin(descriptors), std::filesystem::end(descriptors)));
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
