#include "StartedCommands.hpp"

#include <deque>
#include <mutex>

#include "ShellWords.hpp"

namespace {

constexpr std::size_t mostKept = 20;

struct Notes {
    std::mutex mutex;
    std::deque<std::string> lines;
};

Notes& notes() {
    static Notes kept;
    return kept;
}

}  // namespace

void noteStartedCommand(const std::vector<std::string>& command,
                        const std::map<std::string, std::string>& environment) {
    std::string line;
    for (const auto& [name, value] : environment) {
        line += name + "=" + shellLine({value}) + " ";
    }
    Notes& kept = notes();
    const std::lock_guard lock(kept.mutex);
    kept.lines.push_back(line + shellLine(command));
    if (kept.lines.size() > mostKept) {
        kept.lines.pop_front();
    }
}

std::vector<std::string> startedCommands() {
    Notes& kept = notes();
    const std::lock_guard lock(kept.mutex);
    return {kept.lines.begin(), kept.lines.end()};
}
