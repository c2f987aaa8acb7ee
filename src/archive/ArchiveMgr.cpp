#include "ArchiveMgr.hpp"

#include <chrono>
#include <cstdarg>
#include <cstring>

#include "ArchiveLogInfo.hpp"
#include "Console.hpp"
#include "FileAccess.hpp"
#include "Invariant.hpp"
#include "SmLogs.hpp"
#include "Wait.hpp"

namespace Korvel {
namespace {

constexpr unsigned bufferSize = 2097152;
constexpr std::chrono::seconds pollPeriod{5};

}  // namespace

ArchiveMgr::ArchiveMgr() : IManager("Archive") {
}

ArchiveMgr::~ArchiveMgr() = default;

bool ArchiveMgr::detectKeywords(int argc, char** argv) {
    return argc >= 2 && std::strcmp(argv[1], "archive") == 0;
}

void ArchiveMgr::printHelpMsg(const std::string& indent, const std::string& programName) {
    print("  Archive:\n");
    print(indent, "== Examples ==\n");
    print(indent, "  ", programName, "  archive\n\n");
}

bool ArchiveMgr::run() {
    logClient = SmLog::getClientInstance(dispatcherLogName, smLogApplication);
    requireInvariant(nullptr != logClient, "nullptr != logClient", "ArchiveMgr");
    dismissFileHelper();
    buffer.resize(bufferSize);
    const auto follow = [this](const char* shortName, const char* logName) {
        return std::make_unique<ArchiveLogInfo>(*this, shortName,
                                                SmLog::getClientInstance(logName, smLogApplication));
    };
    dispatcherLog = follow("dispatcher", dispatcherLogName);
    syslibLog = follow("syslib", syslibLogName);
    for (;;) {
        dispatcherLog->updateLog(buffer.data(), bufferSize);
        syslibLog->updateLog(buffer.data(), bufferSize);
        nap(pollPeriod);
    }
}

void ArchiveMgr::logf(int level, const char* format, ...) const {
    if (logClient == nullptr) {
        return;
    }
    std::va_list arguments;
    va_start(arguments, format);
    logClient->vwrite(level, "Archive", format, arguments);
    va_end(arguments);
}

}  // namespace Korvel
