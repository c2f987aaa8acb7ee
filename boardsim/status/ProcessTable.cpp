#include "ProcessTable.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <sstream>
#include <string_view>

#include <sys/stat.h>
#include <unistd.h>

#include "TextFile.hpp"
#include "WholeNumber.hpp"

namespace Boardsim {
namespace {

using namespace std::chrono;

/// A process can make its command line arbitrarily long.
constexpr std::size_t commandLineLimit = std::size_t{64} << 10;

std::string procFile(pid_t process, const char* name) {
    return "/proc/" + std::to_string(process) + "/" + name;
}

/// The value of a key in /proc/PROCESS/status.
std::string statusField(pid_t process, std::string_view key) {
    for (const std::string& line : linesOf(readTextFile(procFile(process, "status")))) {
        if (line.starts_with(key)) {
            return line.substr(key.size());
        }
    }
    return "";
}

nanoseconds now(clockid_t clock) {
    timespec time{};
    ::clock_gettime(clock, &time);
    return seconds(time.tv_sec) + nanoseconds(time.tv_nsec);
}

/// The start time of the process, since boot: the 22nd field of /proc/PROCESS/stat. The second field is the
/// name in parentheses, which may contain anything.
nanoseconds sinceBoot(pid_t process) {
    constexpr int fieldsBetween = 19;
    const std::string text = readTextFile(procFile(process, "stat"));
    std::istringstream fields(text.substr(text.rfind(')') + 1));
    std::string skipped;
    for (int i = 0; i < fieldsBetween; ++i) {
        fields >> skipped;
    }
    std::int64_t ticks = 0;
    fields >> ticks;
    return nanoseconds(seconds(1)) / ::sysconf(_SC_CLK_TCK) * ticks;
}

}  // namespace

std::vector<pid_t> ProcessTable::ids() {
    std::vector<pid_t> ids;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        if (const auto id = wholeNumber<pid_t>(entry.path().filename().native())) {
            ids.push_back(*id);
        }
    }
    std::ranges::sort(ids);
    return ids;
}

std::vector<std::string> ProcessTable::commandLine(pid_t process) {
    std::vector<std::string> words;
    try {
        std::istringstream text(readBeginning(procFile(process, "cmdline"), commandLineLimit));
        for (std::string word; std::getline(text, word, '\0');) {
            words.push_back(word);
        }
    } catch (const std::system_error&) {
        return {};
    }
    return words;
}

bool ProcessTable::isOwn(pid_t process) {
    struct stat status {};
    return ::stat(procFile(process, "").c_str(), &status) == 0 && status.st_uid == ::geteuid();
}

pid_t ProcessTable::parent(pid_t process) {
    pid_t id = 0;
    std::istringstream(statusField(process, "PPid:")) >> id;
    return id;
}

pid_t ProcessTable::innermostId(pid_t process) {
    pid_t id = 0;
    for (std::istringstream ids(statusField(process, "NSpid:")); ids >> id;) {
    }
    return id;
}

std::string ProcessTable::pidNamespace(pid_t process) {
    return std::filesystem::read_symlink(procFile(process, "ns/pid"));
}

sys_seconds ProcessTable::startTime(pid_t process) {
    const nanoseconds bootTime = now(CLOCK_REALTIME) - now(CLOCK_BOOTTIME);
    return sys_seconds(floor<seconds>(bootTime + sinceBoot(process)));
}

}  // namespace Boardsim
