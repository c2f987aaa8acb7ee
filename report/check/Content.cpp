#include "Content.hpp"

#include <algorithm>
#include <array>

namespace Report {
namespace {

constexpr std::uint64_t pageSize = 4096;
constexpr std::uint64_t sharedLogLimit = std::uint64_t{2} << 20;  // of the logs in shared memory
constexpr std::uint64_t shareOfInvalid = 10;                      // one byte in ten is too many for a text

// Files of the Linux logs that copy what the kernel always fills.
constexpr std::array<std::string_view, 8> kernelFiles{"cmdline", "df",        "interfaces", "meminfo",
                                                      "mounts",  "processes", "ps",         "uptime"};

bool isPiece(const Part& part) {
    return part.piece || part.member.ends_with(".gz");
}

bool mayBeEmpty(const Part& part, const PartPlace& place) {
    return !isNeverEmpty(place) && place.collector != Collector::mmi && !place.isDump() &&
           place.collector != Collector::postMortem &&
           !(place.collector == Collector::archive && isPiece(part));
}

State stateOfDump(const Part& part, const PartPlace& place) {
    const std::string closing = "</" + std::string(place.leaf) + "_dump>";
    const std::string opening = "<" + std::string(place.leaf) + "_dump>";
    const std::string text = evidenceTextOf(part);
    const std::size_t end = text.rfind(closing);
    if (end == std::string::npos) {
        return State::cut;
    }
    const std::size_t start = text.find(opening);
    const bool blank = start != std::string::npos && start < end &&
                       text.find_first_not_of(" \t\r\n", start + opening.size()) == end;
    return blank ? State::empty : State::present;
}

}  // namespace

std::string evidenceTextOf(const Part& part) {
    return hasWholeText(part) ? part.text.head(wholeTextSize) : part.tail;
}

bool hasWholeText(const Part& part) {
    return part.textSize > 0 && part.textSize <= wholeTextSize && part.text.size() == part.textSize;
}

bool endsAtPage(const Part& part) {
    return part.textSize > 0 && part.textSize % pageSize == 0 && !isPiece(part) && !part.tail.empty() &&
           part.tail.back() != '\n';
}

bool isBinary(const Part& part) {
    return part.invalidBytes * shareOfInvalid > part.textSize;
}

bool isNeverEmpty(const PartPlace& place) {
    if (place.collector == Collector::linuxLogs) {
        return std::ranges::find(kernelFiles, place.leaf) != kernelFiles.end();
    }
    return place.collector == Collector::fuse && place.known != nullptr && !place.isSharedLog();
}

State stateOfContent(const Part& part, const PartPlace& place) {
    if (part.state != State::present) {
        return part.state;
    }
    if (part.size == 0) {
        return mayBeEmpty(part, place) ? State::present : State::empty;
    }
    if (place.known != nullptr && part.textSize >= sourceSizeLimit) {
        return State::cut;
    }
    if (place.isDump()) {
        return stateOfDump(part, place);
    }
    const bool full = place.isSharedLog() && part.textSize + pageSize > sharedLogLimit;
    if (endsAtPage(part) && !full && place.collector != Collector::unknown) {
        return State::cut;
    }
    return place.known != nullptr && isBinary(part) ? State::unreadable : State::present;
}

}  // namespace Report
