#include "EntrySelection.hpp"

#include <algorithm>
#include <iterator>
#include <map>
#include <string>
#include <tuple>
#include <utility>

#include "Phrases.hpp"

namespace Report::Html {
namespace {

constexpr std::size_t longestEntry = 2000;  // bytes of its text
constexpr std::size_t overhead = 32;        // bytes of an entry on the page besides its text
constexpr std::size_t mostPerLog = 2000;    // bytes that each log is sure of: about 20 entries

}  // namespace

bool isUrgent(const LogEntry& entry) {
    return entry.level && *entry.level <= Level::warning;
}

/// Joins the entries that several logs contain. A log may also repeat an entry: its second copy is joined
/// with the second copy of the other logs.
class EntrySelection::Merger {
public:
    void add(Candidate&& candidate) {
        LogEntry& entry = candidate.entry;
        if (merged.empty() || merged.back().entry.time != entry.time) {
            copies.clear();
            places.clear();
        }
        const Text text{entry.level, entry.tag, entry.text};
        const std::size_t copy = copies[{text, candidate.log}]++;
        const auto [place, added] = places.emplace(std::pair{text, copy}, merged.size());
        if (added || !entry.time) {
            merged.push_back({std::move(entry), {candidate.log}, candidate.leftOut});
        } else {
            merged[place->second].logs.push_back(candidate.log);
        }
    }

    std::vector<KeptEntry> take() { return std::move(merged); }

private:
    using Text = std::tuple<std::optional<Level>, std::string, std::string>;

    std::vector<KeptEntry> merged;
    // Of the entries at the time of the last one:
    std::map<std::pair<Text, std::uint32_t>, std::size_t> copies;  ///< by log
    std::map<std::pair<Text, std::size_t>, std::size_t> places;    ///< in `merged`, of each copy
};

std::size_t EntrySelection::Candidate::size() const {
    return entry.text.size() + overhead;
}

EntrySelection::Rank EntrySelection::rankOf(const Candidate& candidate) {
    return {isUrgent(candidate.entry), candidate.entry.time, candidate.sequence};
}

EntrySelection::EntrySelection(std::size_t bytes, std::size_t logs)
    : mostBytes(bytes), surePerLog(std::min(mostPerLog, bytes / 2 / std::max<std::size_t>(logs, 1))) {
}

void EntrySelection::add(const LogEntry& entry) {
    Candidate candidate{entry, log, sequence++, 0};
    if (entry.text.size() > longestEntry) {
        candidate.entry.text = shortened(entry.text, longestEntry);
        candidate.leftOut = entry.text.size() - longestEntry;
    }
    lastBytes += candidate.size();
    last.push_back(std::move(candidate));
    while (lastBytes > surePerLog && !last.empty()) {
        lastBytes -= last.front().size();
        offer(std::move(last.front()));
        last.pop_front();
    }
}

void EntrySelection::endLog() {
    std::ranges::move(last, std::back_inserter(sure));
    sureBytes += lastBytes;
    last.clear();
    lastBytes = 0;
}

/// Trimming needs time in proportion to what is kept, so it waits until there is twice as much.
void EntrySelection::offer(Candidate&& candidate) {
    if (lowest && rankOf(candidate) < *lowest) {
        return;
    }
    otherBytes += candidate.size();
    others.push_back(std::move(candidate));
    if (otherBytes > 2 * mostBytes) {
        trim(mostBytes);
    }
}

void EntrySelection::trim(std::size_t bytes) {
    if (otherBytes <= bytes) {
        return;
    }
    // With places in `others`. They are cheaper to sort than candidates.
    std::vector<std::pair<Rank, std::size_t>> ranks;
    ranks.reserve(others.size());
    for (const Candidate& candidate : others) {
        ranks.emplace_back(rankOf(candidate), ranks.size());
    }
    std::ranges::sort(ranks, std::ranges::greater{});
    std::vector<Candidate> kept;
    otherBytes = 0;
    for (const auto& [rank, place] : ranks) {
        Candidate& candidate = others[place];
        if (otherBytes + candidate.size() > bytes) {
            lowest = rank;
            break;
        }
        otherBytes += candidate.size();
        kept.push_back(std::move(candidate));
    }
    others = std::move(kept);
}

std::vector<KeptEntry> EntrySelection::take() {
    trim(mostBytes - std::min(mostBytes, sureBytes));
    std::vector<Candidate> all = std::move(sure);
    std::ranges::move(others, std::back_inserter(all));
    others.clear();
    std::ranges::sort(all, {}, [](const Candidate& candidate) {
        return std::pair{candidate.entry.time, candidate.sequence};
    });
    Merger merger;
    for (Candidate& candidate : all) {
        merger.add(std::move(candidate));
    }
    return merger.take();
}

}  // namespace Report::Html
