#include "Content.hpp"

#include <algorithm>
#include <array>

namespace Report {
namespace {

constexpr std::uint64_t pageSize = 4096;
constexpr std::uint64_t sharedLogLimit = std::uint64_t{2} << 20;  // of the logs in shared memory
constexpr std::uint64_t shareOfInvalid = 10;                      // one byte in ten is too many for a text

/// A file of the Linux logs that is a table of the kernel or of a command, and no log.
struct LinuxTable {
    std::string_view leaf;
    bool neverEmpty;
};

constexpr std::array linuxTables{
    LinuxTable{"cmdline", true},  LinuxTable{"df", true},        LinuxTable{"interfaces", true},
    LinuxTable{"meminfo", true},  LinuxTable{"mounts", true},    LinuxTable{"processes", true},
    LinuxTable{"ps", true},       LinuxTable{"uptime", true},    LinuxTable{"arp", false},
    LinuxTable{"environ", false}, LinuxTable{"ifconfig", false}, LinuxTable{"interrupts", false},
    LinuxTable{"ip", false},      LinuxTable{"lsmod", false},    LinuxTable{"modules", false},
    LinuxTable{"netstat", false}, LinuxTable{"route", false},    LinuxTable{"slabinfo", false},
    LinuxTable{"sysctl", false},  LinuxTable{"top", false},      LinuxTable{"version", false},
    LinuxTable{"vmstat", false},
};

const LinuxTable* findLinuxTable(const PartPlace& place) {
    const auto* const row = std::ranges::find(linuxTables, place.leaf, &LinuxTable::leaf);
    return place.collector == Collector::linuxLogs && row != linuxTables.end() ? &*row : nullptr;
}

bool isPiece(const Part& part) {
    return part.piece || part.member.ends_with(".gz");
}

bool mayBeEmpty(const Part& part, const PartPlace& place) {
    return !isNeverEmpty(place) && place.collector != Collector::mmi && !place.isDump() &&
           place.collector != Collector::postMortem &&
           !(place.collector == Collector::archive && isPiece(part));
}

/// Where the last line that is `wanted` begins, without the blanks around it.
std::size_t lastLine(std::string_view text, std::string_view wanted) {
    constexpr std::string_view blanks = " \t\r";
    constexpr std::size_t nowhere = std::string_view::npos;
    std::size_t place = text.rfind(wanted);
    while (place != nowhere) {
        const std::size_t before = text.substr(0, place).find_last_not_of(blanks);
        const std::size_t behind = text.find_first_not_of(blanks, place + wanted.size());
        if ((before == nowhere || text[before] == '\n') && (behind == nowhere || text[behind] == '\n')) {
            break;
        }
        place = place == 0 ? nowhere : text.rfind(wanted, place - 1);
    }
    return place;
}

State stateOfDump(const Part& part, const PartPlace& place) {
    const std::string closing = "</" + std::string(place.leaf) + "_dump>";
    const std::string opening = "<" + std::string(place.leaf) + "_dump>";
    const std::string text = evidenceTextOf(part);
    const std::size_t end = lastLine(text, closing);
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

bool isSharedLogFull(const Part& part) {
    return part.textSize + pageSize > sharedLogLimit;
}

bool isBinary(const Part& part) {
    return part.invalidBytes * shareOfInvalid > part.textSize;
}

bool isNeverEmpty(const PartPlace& place) {
    if (const LinuxTable* const table = findLinuxTable(place)) {
        return table->neverEmpty;
    }
    return place.collector == Collector::fuse && place.known != nullptr && !place.isSharedLog();
}

bool isLinuxLog(const PartPlace& place) {
    return place.collector == Collector::linuxLogs && findLinuxTable(place) == nullptr;
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
    const bool full = place.isSharedLog() && isSharedLogFull(part);
    const bool isText = !isLinuxLog(place) || !isBinary(part);
    if (endsAtPage(part) && isText && !full && place.collector != Collector::unknown) {
        return State::cut;
    }
    return place.known != nullptr && isBinary(part) ? State::unreadable : State::present;
}

}  // namespace Report
