#include "TestFiles.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace fs = std::filesystem;

void writeFile(const std::string& path, std::string_view content) {
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << content;
    if (!file.flush()) {
        throw std::runtime_error("cannot write " + path);
    }
}

std::string contentOfFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + path);
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> linesOfFile(const std::string& path) {
    std::istringstream content(contentOfFile(path));
    std::vector<std::string> lines;
    for (std::string line; std::getline(content, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> filesBelow(const std::string& directory) {
    std::vector<std::string> files;
    if (fs::is_directory(directory)) {
        for (const auto& entry : fs::recursive_directory_iterator(directory)) {
            if (entry.is_regular_file()) {
                files.push_back(fs::relative(entry.path(), directory).string());
            }
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string besideThisProgram(const std::string& name) {
    return fs::read_symlink("/proc/self/exe").replace_filename(name);
}
