#pragma once

#include <ctime>
#include <string>
#include <vector>

/// The receiving end of the system log at its real place, /dev/log. Keeps some ten records until they are
/// asked for and has no room for more.
class SystemLog {
public:
    SystemLog();
    SystemLog(const SystemLog&) = delete;
    SystemLog& operator=(const SystemLog&) = delete;
    SystemLog(SystemLog&&) = delete;
    SystemLog& operator=(SystemLog&&) = delete;
    ~SystemLog();

    /// Every byte of the records that arrived since the last call, but for the time stamp: one that lies
    /// between the log's construction and now reads "TIME".
    std::vector<std::string> records();

    /// Leaves no room for another record, by records that do not count.
    void fill() const;

private:
    std::string withoutTime(std::string record) const;

    int socket;
    std::time_t begin;
};
