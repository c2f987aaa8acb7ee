#pragma once

#include <string>

namespace Korvel {

/// Gathers the logs of one source, once; prints them and writes them to files as often as asked.
/// Failures are reported on standard error and end nothing: what was gathered is kept.
class LogCollector {
public:
    /// Creates `dir`, the collector's own directory, with its parents.
    explicit LogCollector(const std::string& dir);
    LogCollector(const LogCollector&) = delete;
    LogCollector& operator=(const LogCollector&) = delete;
    LogCollector(LogCollector&&) = delete;
    LogCollector& operator=(LogCollector&&) = delete;
    virtual ~LogCollector();

    /// `printRequested`: the logs will be printed. False where sources were left out.
    virtual bool collectLogs(bool printRequested) = 0;

    /// False where something could not be printed.
    virtual bool printOnConsole() = 0;

    /// False where a file could not be written.
    virtual bool dumpToFiles() = 0;

protected:
    const std::string collectorDir;
};

}  // namespace Korvel
