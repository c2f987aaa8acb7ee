#pragma once

#include <string>

/// A shared-memory log to which the board's processes write all the time, so that what a reader gets depends
/// on the moment.
class GrowingLog {
public:
    /// Remembers what the log `logName` holds now.
    explicit GrowingLog(const char* logName);

    /// What the log holds now.
    std::string text() const;

    /// The longest text that a reader can have got since construction and that stands in `output`; where
    /// there is none, what the log held at construction.
    std::string versionIn(const std::string& output) const;

private:
    const char* name;
    std::string before;
};
