#include "RunningBoard.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <ctime>
#include <filesystem>
#include <optional>
#include <sstream>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "BoardPaths.hpp"
#include "PrintableText.hpp"
#include "SystemCall.hpp"
#include "TextFile.hpp"

namespace fs = std::filesystem;

namespace {

using Words = std::vector<std::string>;

std::string procFile(pid_t process, const char* name) {
    return "/proc/" + std::to_string(process) + "/" + name;
}

/// The ids of the processes below a /proc, in order.
std::vector<pid_t> processIds(const std::string& proc) {
    std::vector<pid_t> ids;
    for (const auto& entry : fs::directory_iterator(proc)) {
        const std::string name = entry.path().filename();
        pid_t id = 0;
        const auto [stop, error] = std::from_chars(name.data(), name.data() + name.size(), id);
        if (error == std::errc{} && *stop == '\0') {
            ids.push_back(id);
        }
    }
    std::ranges::sort(ids);
    return ids;
}

/// The words of a command line as /proc has it; none where the process is gone.
Words commandLine(const std::string& file) {
    Words words;
    try {
        std::istringstream text(readTextFile(file));
        for (std::string word; std::getline(text, word, '\0');) {
            words.push_back(word);
        }
    } catch (const std::system_error&) {
        return {};
    }
    return words;
}

bool isOwn(pid_t process) {
    struct stat status {};
    return ::stat(procFile(process, "").c_str(), &status) == 0 && status.st_uid == ::geteuid();
}

/// Whether this is the first process of a board: init LINE COMMAND...
bool isFirstProcess(pid_t process) {
    const Words words = commandLine(procFile(process, "cmdline"));
    return words.size() > 2 && words[0] == BoardPaths::init && isOwn(process);
}

/// A descriptor that is readable when the process has ended. Not pidfd_open(), whose header in Debian 12 is
/// for C alone.
UniqueFd openProcess(pid_t process) {
    return UniqueFd(static_cast<int>(checked(::syscall(SYS_pidfd_open, process, 0), "pidfd_open")));
}

pid_t parentOf(pid_t process) {
    constexpr std::string_view key = "PPid:";
    pid_t parent = 0;
    for (const std::string& line : linesOf(readTextFile(procFile(process, "status")))) {
        if (line.starts_with(key)) {
            std::istringstream(line.substr(key.size())) >> parent;
        }
    }
    return parent;
}

/// Between the program that people start and the first process there is bubblewrap. From the board itself
/// neither is to be seen.
pid_t keeperOf(pid_t firstProcess) {
    const pid_t bubblewrap = parentOf(firstProcess);
    return bubblewrap == 0 ? firstProcess : parentOf(bubblewrap);
}

std::string commandOf(pid_t firstProcess) {
    const Words words = commandLine(procFile(firstProcess, "cmdline"));
    std::string text;
    for (std::size_t i = 2; i < words.size(); ++i) {
        text += (i == 2 ? "" : " ") + words[i];
    }
    return printable(text);
}

}  // namespace

std::vector<RunningBoard> RunningBoard::all() {
    std::vector<RunningBoard> boards;
    for (const pid_t process : processIds("/proc")) {
        try {
            if (isFirstProcess(process)) {
                boards.push_back(RunningBoard(process));
            }
        } catch (const std::system_error&) {
            continue;  // it has just ended
        }
    }
    return boards;
}

RunningBoard::RunningBoard(pid_t firstProcess)
    : root(checked(::open(procFile(firstProcess, "root").c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC),
                   "cannot look into a board")),
      end(openProcess(firstProcess)),
      keeper(keeperOf(firstProcess)),
      words(commandOf(firstProcess)) {
}

std::string RunningBoard::startTime() const {
    struct stat status {};
    checked(::lstat(pathTo(BoardPaths::init).c_str(), &status), "cannot look into a board");
    std::tm parts{};
    ::gmtime_r(&status.st_mtime, &parts);
    std::array<char, 64> text{};
    std::strftime(text.data(), text.size(), "%FT%TZ", &parts);
    return text.data();
}

std::string RunningBoard::pathTo(const std::string& path) const {
    return "/proc/self/fd/" + std::to_string(root.get()) + path;
}

pid_t RunningBoard::findProcess(const std::string& name) const {
    const std::string proc = pathTo("/proc");
    for (const pid_t process : processIds(proc)) {
        if (commandLine(proc + "/" + std::to_string(process) + "/cmdline") == Words{name}) {
            return process;
        }
    }
    return 0;
}
