#include "FuzzPackage.hpp"

#include <algorithm>
#include <charconv>
#include <ctime>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

#include "FuzzTarget.hpp"
#include "PackageBuilder.hpp"
#include "ReadOutcome.hpp"
#include "SmallLimits.hpp"
#include "UniqueFd.hpp"

namespace ReportFuzz {

namespace {

using ReportTest::PackageBuilder;

/// A line `== NAME TIME` and the lines after it.
struct Section {
    std::string name;
    std::optional<std::time_t> time;
    std::string_view contents;
};

constexpr std::string_view mark = "== ";

/// Compression takes time. The target `archive` covers compressed data.
constexpr int stored = 0;

std::vector<Section> sectionsOf(std::string_view text) {
    std::vector<Section> sections;
    while (text.starts_with(mark)) {
        const std::size_t lineEnd = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(mark.size(), lineEnd - mark.size());
        text.remove_prefix(std::min(lineEnd + 1, text.size()));
        Section& section = sections.emplace_back();
        const std::size_t blank = line.find(' ');
        section.name = line.substr(0, blank);
        if (blank != std::string_view::npos) {
            std::uint32_t time = 0;
            std::from_chars(line.data() + blank + 1, line.data() + line.size(), time);
            section.time = time;
        }
        const std::size_t next = text.starts_with(mark) ? 0 : text.find("\n" + std::string(mark));
        section.contents = text.substr(0, next == 0 || next == std::string_view::npos ? next : next + 1);
        text.remove_prefix(section.contents.size());
    }
    return sections;
}

std::string withChecksum(std::string text, const std::string& package) {
    const std::size_t at = text.find('@');
    return at == std::string::npos ? text : text.replace(at, 1, ReportTest::readBytes(package).facts.sha256);
}

Base::UniqueFd memoryFile(std::string_view contents) {
    Base::UniqueFd file(::memfd_create("package", MFD_CLOEXEC));
    Fuzz::require(
        ::write(file.get(), contents.data(), contents.size()) == static_cast<ssize_t>(contents.size()),
        "a file in memory is written");
    return file;
}

std::string pathOf(const Base::UniqueFd& file) {
    return "/proc/self/fd/" + std::to_string(file.get());
}

/// Builds nested packages from the innermost outwards.
class Assembler {
public:
    void add(const Section& section) {
        PackageBuilder& builder = levels.back().builder;
        if (section.time) {
            builder.at(*section.time);
        }
        if (section.name == "end") {
            close();
        } else if (section.name.ends_with(".tgz") && levels.size() < mostLevels) {
            levels.push_back({section.name, {}});
        } else if (section.name.ends_with("/")) {
            builder.directory(nameOf(section));
        } else {
            builder.file(nameOf(section), section.name.ends_with(".gz")
                                              ? ReportTest::gzip(section.contents, stored)
                                              : section.contents);
        }
    }

    std::string package() {
        while (levels.size() > 1) {
            close();
        }
        return ReportTest::gzip(levels.back().builder.tar(), stored);
    }

private:
    struct Level {
        std::string name;
        PackageBuilder builder;
    };
    static constexpr std::size_t mostLevels = 4;

    static std::string nameOf(const Section& section) {
        return section.name.substr(0, section.name.find('\0'));
    }

    void close() {
        if (levels.size() > 1) {
            const Level level = std::move(levels.back());
            levels.pop_back();
            levels.back().builder.file(level.name, ReportTest::gzip(level.builder.tar(), stored));
        }
    }

    std::vector<Level> levels{1};
};

}  // namespace

FuzzPackage::FuzzPackage(std::string_view description, std::initializer_list<std::string_view> others) {
    Assembler assembler;
    for (const Section& section : sectionsOf(description)) {
        if (section.name == "run" || std::ranges::count(others, section.name) > 0) {
            otherTexts[section.name] = section.contents;
        } else {
            assembler.add(section);
        }
    }
    package = assembler.package();
    if (const auto run = otherTexts.find("run"); run != otherTexts.end()) {
        run->second = withChecksum(run->second, package);
    }
}

std::optional<std::string> FuzzPackage::find(std::string_view other) const {
    const auto found = otherTexts.find(other);
    return found == otherTexts.end() ? std::nullopt : std::optional(found->second);
}

Report::Package FuzzPackage::load(Report::Keep keep, std::shared_ptr<const Report::LogForms> forms) const {
    Report::LoadOptions options;
    options.keep = keep;
    options.forms = std::move(forms);
    options.limits = smallLimits();
    const std::optional<std::string> run = find("run");
    const Base::UniqueFd runFile = run ? memoryFile(*run) : Base::UniqueFd();
    if (run) {
        options.runFile = pathOf(runFile);
    }
    const Base::UniqueFd file = memoryFile(package);
    return loadPackage(Report::PackageSource(pathOf(file)), options);
}

}  // namespace ReportFuzz
