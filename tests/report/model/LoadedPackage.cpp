#include "LoadedPackage.hpp"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "Description.hpp"

namespace ReportTest {

TemporaryFolder::TemporaryFolder() {
    folder = (std::filesystem::temp_directory_path() / "korvel-report-XXXXXX").string();
    if (::mkdtemp(folder.data()) == nullptr) {
        throw std::runtime_error("cannot make " + folder);
    }
}

TemporaryFolder::~TemporaryFolder() {
    std::filesystem::remove_all(folder);
}

std::string TemporaryFolder::write(const std::string& name, const std::string& content) const {
    std::ofstream(path(name), std::ios::binary) << content;
    return path(name);
}

Report::Package loadFile(const std::string& path, const Report::LoadOptions& options) {
    Report::LoadOptions atTestTime = options;
    atTestTime.now = testTime;
    return Report::loadPackage(Report::PackageSource(path), atTestTime);
}

Report::Package load(const std::string& bytes, const Report::LoadOptions& options, const std::string& name) {
    const TemporaryFolder folder;
    Report::Package package = loadFile(folder.write(name, bytes), options);
    package.source = name;
    return package;
}

std::string entriesOf(const Report::Package& package, const std::string& part, std::size_t maxLine) {
    std::string text;
    Report::forEachEntry(package, partOf(package, part), maxLine, [&](const Report::LogEntry& entry) {
        std::string line = describe(entry);
        std::ranges::replace(line, '\n', '|');
        text += line + '\n';
        return true;
    });
    return text;
}

const Report::Part& partOf(const Report::Package& package, const std::string& name) {
    const auto part = std::ranges::find(package.parts, name, &Report::Part::name);
    if (part == package.parts.end()) {
        throw std::runtime_error("no part " + name);
    }
    return *part;
}

}  // namespace ReportTest
