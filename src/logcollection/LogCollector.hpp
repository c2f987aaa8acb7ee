#pragma once

#include <cstddef>
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
    /// How many bytes the next file or reply may have: 16 MiB, or what is left of 48 MiB for all collectors
    /// together. What is beyond is cut, so that one huge file costs neither memory nor the rest.
    static std::size_t room();

    /// Counts what was gathered, until this collector ends. Reports once that there is no room left.
    void count(const std::string& text);

    /// Counts `text`, cut to the room that there is. A cut is reported under the source's name.
    std::string gathered(std::string text, const std::string& sourceName);

    const std::string collectorDir;

private:
    static std::size_t gatheredByAll;
    std::size_t gatheredBytes = 0;
};

}  // namespace Korvel
