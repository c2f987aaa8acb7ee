#include "ArchiveRunFixture.hpp"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "LogEntries.hpp"

using namespace std::chrono_literals;

ArchiveRunFixture::ArchiveRunFixture() {
    ::setenv("LC_ALL", "C", 1);  // for the messages of other programs
    std::filesystem::remove_all("/tmp/korvel");
}

void ArchiveRunFixture::start(const Surroundings& surroundings) {
    process = std::make_unique<Process>(std::vector<std::string>{"korvel", "archive"}, surroundings);
}

Outcome ArchiveRunFixture::end(int signal) {
    ::kill(process->pid(), signal);
    return process->wait();
}

void ArchiveRunFixture::await(const std::function<bool()>& condition) {
    const auto patience = std::chrono::steady_clock::now() + 60s;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > patience) {
            FAIL() << "waited in vain";
        }
        std::this_thread::sleep_for(10ms);
    }
}

void ArchiveRunFixture::approachRotation() {
    constexpr unsigned entriesOfAPiece = threshold / RecordedLog::largest;
    syslib.log.write(entriesOfAPiece - 1);
    await([this] { return syslib.hasAll(); });
}

std::string ArchiveRunFixture::openForMonitoring(const FollowedLog& followed) {
    return "2 Archive: " + followed.files.runtimePath + " open for monitoring";
}

std::string ArchiveRunFixture::notOpened(const FollowedLog& followed) {
    return "0 Archive: Error while opening " + followed.files.runtimePath;
}

std::string ArchiveRunFixture::notWritten(const FollowedLog& followed) {
    return "0 Archive: Error while writing to  " + followed.files.runtimePath;
}

std::vector<std::string> ArchiveRunFixture::records() {
    return logEntries("dispatcher_log_memory");
}

void ArchiveRunFixture::awaitRecords(std::size_t count) {
    await([count] { return records().size() >= count; });
}
