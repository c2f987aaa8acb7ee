#include "LogWriters.hpp"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

#include "SmLog.hpp"

namespace {

constexpr AppID application = 3;
constexpr std::size_t paddingSize = 940;

[[noreturn]] void writeEntries(int writer, int count, const char* logName) {
    SmLog* const log = SmLog::getClientInstance(logName, application);
    const std::string padding(paddingSize, 'x');
    for (int i = 0; log != nullptr && i < count; ++i) {
        log->write(0, "Writer", "%d entry %d %s", writer, i, padding.c_str());
    }
    ::_exit(log == nullptr ? EXIT_FAILURE : EXIT_SUCCESS);
}

bool succeeds(pid_t process) {
    int status = 0;
    return ::waitpid(process, &status, 0) == process && status == 0;
}

}  // namespace

bool writeFromProcesses(int processes, int entriesOfEach, const char* logName) {
    std::vector<pid_t> started;
    for (int writer = 0; writer < processes; ++writer) {
        const pid_t process = ::fork();
        if (process == 0) {
            writeEntries(writer, entriesOfEach, logName);
        }
        started.push_back(process);
    }
    return std::ranges::count_if(started, succeeds) == processes;
}
