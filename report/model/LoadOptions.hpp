#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Limits.hpp"
#include "LogForms.hpp"
#include "Package.hpp"

namespace Report {

/// How much of a package's text is kept in memory.
enum class Keep : std::uint8_t {
    evidence,  ///< small texts only, enough for check
    all,       ///< every text, with values and logs
};

struct LoadOptions {
    Limits limits;
    Keep keep = Keep::all;
    std::optional<std::string> board;       ///< --board
    std::optional<Kind> kind;               ///< --kind
    std::optional<std::string> runFile;     ///< --run: the sidecar; else PACKAGE.run beside the package
    bool useRun = true;                     ///< false: --no-run
    std::shared_ptr<const LogForms> forms;  ///< further forms of log lines; null if there are none
    Time now = std::chrono::floor<Time::duration>(std::chrono::system_clock::now());
};

}  // namespace Report
