#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <tuple>
#include <vector>

#include "LogEntry.hpp"

namespace Report::Html {

/// An entry that the page holds.
struct KeptEntry {
    LogEntry entry;
    std::vector<std::uint32_t> logs;  ///< the logs that contain it, by number; usually one
    std::size_t leftOut = 0;          ///< bytes of its text that are left out
};

/// Whether an entry is an error or a warning.
bool isUrgent(const LogEntry& entry);

/// Chooses the entries of a page in one pass over all logs, in memory that does not depend on their number:
/// the last entries of each log, then errors and warnings, then all others, newest first.
class EntrySelection {
public:
    /// Keeps entries that take about `bytes` on the page; each of the `logs` logs is sure of some of them.
    EntrySelection(std::size_t bytes, std::size_t logs);

    /// Each log begins, adds its entries from the oldest to the newest, and ends.
    void beginLog(std::uint32_t number) { log = number; }
    void add(const LogEntry& entry);
    void endLog();

    /// The chosen entries by time; entries without a time first. An entry that several logs contain is one.
    std::vector<KeptEntry> take();

private:
    struct Candidate {
        LogEntry entry;
        std::uint32_t log = 0;
        std::uint64_t sequence = 0;  ///< its place among all entries of all logs
        std::size_t leftOut = 0;

        std::size_t size() const;
    };

    /// What decides whether a candidate is kept: the greater one is kept longer. Whether it is urgent, its
    /// time and its sequence.
    using Rank = std::tuple<bool, std::optional<Time>, std::uint64_t>;

    class Merger;

    static Rank rankOf(const Candidate& candidate);
    void offer(Candidate&& candidate);
    void trim(std::size_t bytes);

    std::size_t mostBytes;
    std::size_t surePerLog;  ///< bytes of the last entries of each log
    std::uint32_t log = 0;
    std::uint64_t sequence = 0;
    std::deque<Candidate> last;  ///< of this log
    std::size_t lastBytes = 0;
    std::vector<Candidate> sure;  ///< the last entries of earlier logs
    std::size_t sureBytes = 0;
    std::vector<Candidate> others;
    std::size_t otherBytes = 0;
    std::optional<Rank> lowest;  ///< candidates below it are not kept
};

}  // namespace Report::Html
