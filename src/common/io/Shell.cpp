#include "Shell.hpp"

#include <array>

#include "Console.hpp"
#include "Spawn.hpp"

namespace Korvel {
namespace {

// The fields of a wait status: the low seven bits are the cause of the end, the next byte is the exit code.
constexpr int signalMask = 0x7f;
constexpr int stopped = 0x7f;

int exitCode(int status) {
    return (status >> 8) & 0xff;
}

}  // namespace

int runShell(const std::string& commandLine) {
    flushStandardOutput();
    const std::array argv{"sh", "-c", commandLine.c_str(), static_cast<const char*>(nullptr)};
    return spawnAndWait("/bin/sh", argv.data());
}

bool executeCommand(const std::string& commandLine) {
    const int status = runShell(commandLine);
    if (status < 0) {
        return failErrno("Error while executing ", commandLine, " command, errno: ");
    }
    const int end = status & signalMask;
    if (end == stopped) {
        return fail("Command: ", commandLine, " exited with error");
    }
    if (end != 0) {
        return fail("Command: ", commandLine, " was signalled: ", end);
    }
    if (exitCode(status) != 0) {
        return fail("Command: ", commandLine, " exited with error, exit code: ", exitCode(status));
    }
    return true;
}

}  // namespace Korvel
