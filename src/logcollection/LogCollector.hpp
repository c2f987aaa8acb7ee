#pragma once

#include <cstddef>
#include <string>

namespace Korvel {

/// Collects the logs of one source once; prints them and writes them to files any number of times. Failures
/// are reported on standard error and do not stop the collection: everything collected is kept.
class LogCollector {
public:
    /// Creates `dir`, the collector's own directory, and its parents.
    explicit LogCollector(const std::string& dir);
    LogCollector(const LogCollector&) = delete;
    LogCollector& operator=(const LogCollector&) = delete;
    LogCollector(LogCollector&&) = delete;
    LogCollector& operator=(LogCollector&&) = delete;
    virtual ~LogCollector();

    /// `printRequested`: the logs will be printed. Returns false if sources were skipped.
    virtual bool collectLogs(bool printRequested) = 0;

    /// Returns false if printing fails.
    virtual bool printOnConsole() = 0;

    /// Returns false if a file cannot be written.
    virtual bool dumpToFiles() = 0;

protected:
    /// Returns the maximum size of the next file or reply in bytes: 16 MiB, or the remainder of 48 MiB for
    /// all collectors together. Larger input is cut, so that one huge file exhausts neither memory nor the
    /// share of later sources.
    static std::size_t room();

    /// Adds the size of `text` to the total until this collector is destroyed. Reports once that the limit is
    /// reached.
    void count(const std::string& text);

    /// Cuts `text` to the remaining size, counts it and returns it. Reports a cut under the source's name.
    std::string cutToLimit(std::string text, const std::string& sourceName);

    const std::string collectorDir;

private:
    static std::size_t totalBytes;
    std::size_t collectedBytes = 0;
};

}  // namespace Korvel
