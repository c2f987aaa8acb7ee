#pragma once

#include <ctime>
#include <string>
#include <vector>

/// The receiving end of the system log at its real path, /dev/log. It holds about ten records until they are
/// read.
class SystemLog {
public:
    SystemLog();
    SystemLog(const SystemLog&) = delete;
    SystemLog& operator=(const SystemLog&) = delete;
    SystemLog(SystemLog&&) = delete;
    SystemLog& operator=(SystemLog&&) = delete;
    ~SystemLog();

    /// The records since the last call, byte for byte. A time stamp between the log's construction and now is
    /// replaced by "TIME".
    std::vector<std::string> records();

    /// Fills the queue with records that records() ignores.
    void fill() const;

private:
    std::string withoutTime(std::string record) const;

    int socket;
    std::time_t begin;
};
