#include "EntrySelection.hpp"

#include <algorithm>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

#include "Phrases.hpp"

namespace Report::Html {
namespace {

constexpr std::size_t longestEntry = 2000;  // bytes of its text
constexpr std::size_t overhead = 32;        // bytes of an entry on the page besides its text
constexpr std::size_t mostPerLog = 2000;    // bytes that each log is sure of: about 20 entries

std::size_t sizeOf(const KeptEntry& kept) {
    return kept.entry.text.size() + overhead;
}

/// Whether an entry is to be kept before another.
bool isBefore(const KeptEntry& a, const KeptEntry& b) {
    const auto rank = [](const KeptEntry& kept) {
        return std::tuple{kept.isUrgent(), kept.entry.time, kept.sequence};
    };
    return rank(a) > rank(b);
}

bool isOlder(const KeptEntry& a, const KeptEntry& b) {
    return std::tie(a.entry.time, a.sequence) < std::tie(b.entry.time, b.sequence);
}

/// Joins the entries that several logs contain. A log may also repeat an entry: its second copy is joined
/// with the second copy of the other logs.
class Merger {
public:
    void add(KeptEntry kept) {
        if (merged.empty() || merged.back().entry.time != kept.entry.time) {
            copies.clear();
            places.clear();
        }
        const Text text{kept.entry.level, kept.entry.tag, kept.entry.text};
        const std::size_t copy = copies[{text, kept.logs.front()}]++;
        const auto [place, added] = places.emplace(std::pair{text, copy}, merged.size());
        if (added || !kept.entry.time) {
            merged.push_back(std::move(kept));
        } else {
            merged[place->second].logs.push_back(kept.logs.front());
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

}  // namespace

EntrySelection::EntrySelection(std::size_t bytes, std::size_t logs)
    : mostBytes(bytes), surePerLog(std::min(mostPerLog, bytes / 2 / std::max<std::size_t>(logs, 1))) {
}

void EntrySelection::add(const LogEntry& entry) {
    KeptEntry kept{entry, {log}, sequence++, 0};
    if (entry.text.size() > longestEntry) {
        kept.entry.text = shortened(entry.text, longestEntry);
        kept.leftOut = entry.text.size() - longestEntry;
    }
    lastBytes += sizeOf(kept);
    last.push_back(std::move(kept));
    while (lastBytes > surePerLog && !last.empty()) {
        lastBytes -= sizeOf(last.front());
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
void EntrySelection::offer(KeptEntry entry) {
    otherBytes += sizeOf(entry);
    others.push_back(std::move(entry));
    if (otherBytes > 2 * mostBytes) {
        trim(mostBytes);
    }
}

void EntrySelection::trim(std::size_t bytes) {
    if (otherBytes <= bytes) {
        return;
    }
    std::ranges::sort(others, isBefore);
    otherBytes = 0;
    const auto end = std::ranges::find_if(others, [&](const KeptEntry& kept) {
        otherBytes += sizeOf(kept);
        return otherBytes > bytes;
    });
    otherBytes -= end == others.end() ? 0 : sizeOf(*end);
    others.erase(end, others.end());
}

std::vector<KeptEntry> EntrySelection::take() {
    trim(mostBytes - std::min(mostBytes, sureBytes));
    std::vector<KeptEntry> all = std::move(sure);
    std::ranges::move(others, std::back_inserter(all));
    others.clear();
    std::ranges::sort(all, isOlder);
    Merger merger;
    for (KeptEntry& kept : all) {
        merger.add(std::move(kept));
    }
    return merger.take();
}

}  // namespace Report::Html
