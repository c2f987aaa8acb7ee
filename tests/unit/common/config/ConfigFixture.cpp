#include "ConfigFixture.hpp"

#include <array>
#include <string_view>
#include <utility>

#include "HostBoard.hpp"
#include "TestFiles.hpp"
#include "VerboseMode.hpp"

namespace {

/// The start of a record by level: the user facility's priority, the time, the program.
constexpr std::array<std::pair<std::string_view, std::string_view>, 4> beginnings{{
    {"<11>TIME ", "error"},
    {"<12>TIME ", "warning"},
    {"<14>TIME ", "information"},
    {"<15>TIME ", "debug"},
}};

std::string withLevel(const std::string& record) {
    for (const auto& [beginning, level] : beginnings) {
        if (record.starts_with(beginning)) {
            const std::size_t text = record.find(": ", beginning.size());
            return std::string(level) + record.substr(text);
        }
    }
    return record;
}

}  // namespace

void ConfigFixture::SetUp() {
    Korvel::setVerboseMode(true);
}

void ConfigFixture::TearDown() {
    Korvel::setVerboseMode(false);
}

Config ConfigFixture::configOf(const std::string& text) {
    writeFile(configurationFile, text);
    return config();
}

Config ConfigFixture::config() {
    return Config(configurationFile);
}

void ConfigFixture::secureTheBoard() {
    writeFile(HostBoard::secureFile, "1\n");
}

void ConfigFixture::failTheQueryForASecuredBoard() {
    writeFile(HostBoard::secureErrorFile, "-5\n");
}

std::vector<std::string> ConfigFixture::records() {
    std::vector<std::string> all;
    for (const std::string& record : systemLog.records()) {
        all.push_back(withLevel(record));
    }
    return all;
}
