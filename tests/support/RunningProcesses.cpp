#include "RunningProcesses.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>

#include "Process.hpp"

namespace fs = std::filesystem;

namespace {

struct Row {
    pid_t pid = 0;
    std::string name = {};
    char state = 0;
    pid_t parent = 0;
};

/// None if the folder is not of a process, or if the process has ended.
std::optional<Row> rowOf(const fs::path& folder) {
    const std::string number = folder.filename();
    if (!std::all_of(number.begin(), number.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        return std::nullopt;
    }
    Row row{.pid = std::stoi(number)};
    std::ifstream file(folder / "stat");  // "PID (NAME) STATE PARENT ..."
    std::getline(std::getline(file, row.name, '('), row.name, ')');
    if (!(file >> row.state >> row.parent) || row.state == 'Z' || row.state == 'X') {
        return std::nullopt;
    }
    return row;
}

std::vector<Row> rowsNamed(const std::string& name) {
    std::vector<Row> rows;
    for (const auto& folder : fs::directory_iterator("/proc")) {
        const std::optional<Row> row = rowOf(folder.path());
        if (row && row->name == name) {
            rows.push_back(*row);
        }
    }
    return rows;
}

}  // namespace

std::vector<pid_t> processesNamed(const std::string& name) {
    std::vector<pid_t> pids;
    for (const Row& row : rowsNamed(name)) {
        pids.push_back(row.pid);
    }
    return pids;
}

std::vector<pid_t> childrenNamed(const std::string& name, pid_t parent) {
    std::vector<pid_t> pids;
    for (const Row& row : rowsNamed(name)) {
        if (row.parent == parent) {
            pids.push_back(row.pid);
        }
    }
    return pids;
}

std::vector<std::string> descriptorsOf(pid_t process) {
    std::vector<std::string> targets;
    for (const auto& link : fs::directory_iterator("/proc/" + std::to_string(process) + "/fd")) {
        targets.push_back(fs::read_symlink(link.path()));
    }
    return targets;
}

std::string inheritedDescriptors() {
    return run({"ls", "/proc/self/fd"}).out;
}
