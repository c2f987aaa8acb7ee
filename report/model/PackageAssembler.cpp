#include "PackageAssembler.hpp"

#include <array>
#include <chrono>
#include <optional>
#include <utility>

#include "MemberName.hpp"

namespace Report {
namespace {

/// Unknown outside the years 1 to 9999: no text has a place for such a year.
std::optional<Time> timeOf(const std::timespec& time) {
    using namespace std::chrono;
    constexpr sys_seconds first = sys_days(year(1) / 1 / 1);
    constexpr sys_seconds last = sys_days(year(10000) / 1 / 1) - seconds(1);
    if (time.tv_sec < first.time_since_epoch().count() || time.tv_sec > last.time_since_epoch().count()) {
        return std::nullopt;
    }
    return Time(seconds(time.tv_sec) + floor<microseconds>(nanoseconds(time.tv_nsec)));
}

/// What is odd about a member of this type; empty for a file or a folder.
std::string oddType(const MemberHeader& header) {
    switch (header.type) {
        case MemberType::file:
        case MemberType::directory:
            return {};
        case MemberType::symbolicLink:
            return "symbolic link to " + header.target;
        case MemberType::hardLink:
            return "hard link to " + header.target;
        case MemberType::device:
            return "device";
        case MemberType::fifo:
            return "FIFO";
        case MemberType::other:
            break;
    }
    return "neither file nor folder";
}

/// Adds the end of one more layer. The first one that is not whole counts.
void merge(LayerEnd& all, const LayerEnd& layer) {
    if (all.integrity == Integrity::whole) {
        all = layer;
    }
}

State stateOf(Integrity integrity) {
    switch (integrity) {
        case Integrity::whole:
            break;
        case Integrity::cut:
            return State::cut;
        case Integrity::altered:
            return State::unreadable;
        case Integrity::notRead:
            return State::notRead;
    }
    return State::present;
}

/// What is odd about a member apart from other members; empty for one that can be followed.
std::string oddityOf(const MemberHeader& header, std::string_view normal) {
    const std::string_view name = oddName(header.name);
    if (!name.empty()) {
        return std::string(name);
    }
    if (normal.empty() && header.type != MemberType::directory) {
        return "empty name";
    }
    return oddType(header);
}

/// Memory of a row in a table of rows with `text` bytes of text. A table needs twice its memory while it
/// grows.
template <typename Row>
std::size_t rowMemory(std::size_t text) {
    return 2 * sizeof(Row) + text;
}

}  // namespace

/// The member that is being read.
struct PackageAssembler::Member {
    Part part;
    std::optional<TextReader> text;  ///< of a part
    std::optional<Package> nested;
    std::set<Limit> limits;  ///< that left out some of it
};

/// A package that is being read.
struct PackageAssembler::Level {
    Package package;
    std::set<std::string, std::less<>> fileNames;  ///< normal names
    std::set<std::string, std::less<>> partNames;
    std::unique_ptr<Member> member;
};

PackageAssembler::PackageAssembler(Budget& budgetOfPackage, bool keepAll,
                                   std::shared_ptr<const LogForms> forms)
    : memory(budgetOfPackage),
      context{budgetOfPackage, memory, budgetOfPackage.limits().maxLine, keepAll, std::move(forms)} {
    levels.push_back(std::make_unique<Level>());
}

PackageAssembler::~PackageAssembler() = default;

Package PackageAssembler::take() {
    return std::move(levels.front()->package);
}

PackageAssembler::Member* PackageAssembler::currentMember() {
    return levels.back()->member.get();
}

void PackageAssembler::enterGzip() {
    if (Member* const member = currentMember()) {
        member->part.piece = true;
    }
}

void PackageAssembler::leaveGzip(const LayerEnd& end) {
    endLayer(end);
}

void PackageAssembler::enterTar() {
    if (currentMember() != nullptr) {
        levels.push_back(std::make_unique<Level>());
    }
}

void PackageAssembler::leaveTar(const LayerEnd& end) {
    if (levels.size() > 1) {
        Package nested = std::move(levels.back()->package);
        levels.pop_back();
        currentMember()->nested = std::move(nested);
    }
    endLayer(end);
}

void PackageAssembler::beginMember(const MemberHeader& header) {
    Level& level = *levels.back();
    level.member = std::make_unique<Member>();
    level.member->part.member = header.name;
    const std::string normal = normalName(header.name);
    const bool folder = header.type == MemberType::directory;
    std::string odd = oddityOf(header, normal);
    if (odd.empty() && addFolders(level, normal, folder) && !folder) {
        odd = addPart(level, header, normal);
    }
    if (!odd.empty() && memory.keepName(rowMemory<Oddity>(header.name.size() + odd.size()))) {
        level.package.oddities.push_back({header.name, std::move(odd)});
    }
}

void PackageAssembler::data(std::string_view bytes) {
    Member* const member = currentMember();
    if (member != nullptr && member->text) {
        member->text->add(bytes);
    }
}

void PackageAssembler::endMember(const LayerEnd& end) {
    endLayer(end);
    Package& package = levels.back()->package;
    const std::unique_ptr<Member> member = std::move(levels.back()->member);
    Part& part = member->part;
    if (member->text && member->nested) {
        endNested(package, *member);
    } else if (member->text) {
        endText(*member);
    }
    for (const Limit limit : member->limits) {
        addUnread(package, part.member, limit);
    }
    if (member->text) {
        member->text.reset();  // it refers to the part
        part.state = stateOf(part.end.integrity);
        package.parts.push_back(std::move(part));
    }
}

/// Adds the first two levels of folders in which a member is, or which it is. Returns false if there is no
/// memory for them.
bool PackageAssembler::addFolders(Level& level, std::string_view normal, bool isFolder) {
    constexpr int deepest = 2;
    std::size_t end = 0;
    for (int depth = 0; depth < deepest && end < normal.size(); ++depth) {
        end = normal.find('/', depth == 0 ? 0 : end + 1);
        if (end == std::string_view::npos && !isFolder) {
            break;
        }
        const std::string_view folder = normal.substr(0, end);
        if (!level.package.folders.contains(folder)) {
            if (!memory.keepName(rowMemory<std::string>(folder.size()))) {
                return false;
            }
            level.package.folders.emplace(folder);
        }
    }
    return true;
}

/// Begins a part for a file. Returns what is odd about it if there cannot be one. Names that were cut may be
/// equal.
std::string PackageAssembler::addPart(Level& level, const MemberHeader& header, const std::string& normal) {
    if (level.fileNames.contains(normal)) {
        return header.nameCut ? "" : "duplicate name";
    }
    std::string_view name = partName(normal);
    name = level.partNames.contains(name) ? std::string_view(normal) : name;
    if (level.partNames.contains(name)) {
        return header.nameCut ? "" : "name of another part";
    }
    if (!memory.keepName(rowMemory<Part>(4 * header.name.size()) + 2 * rowMemory<std::string>(0))) {
        return {};
    }
    level.fileNames.insert(normal);
    level.partNames.emplace(name);
    Part& part = level.member->part;
    part.name = name;
    part.size = header.size;
    part.time = timeOf(header.time);
    level.member->text.emplace(part, level.package.values, formOf(normal), context);
    return {};
}

/// Counts the end of a layer of the current member, if there is one.
void PackageAssembler::endLayer(const LayerEnd& end) {
    if (Member* const member = currentMember()) {
        merge(member->part.end, end);
        if (end.limit) {
            member->limits.insert(*end.limit);
        }
    }
}

void PackageAssembler::endText(Member& member) {
    member.text->finish();
    const std::set<Limit>& reached = member.text->reached();
    member.limits.insert(reached.begin(), reached.end());
    for (const Limit limit : {Limit::memory, Limit::seconds}) {
        if (reached.contains(limit)) {
            merge(member.part.end, endByLimit(limit));
        }
    }
}

void PackageAssembler::endNested(Package& package, Member& member) {
    Package& nested = *member.nested;
    for (const Limit limit : member.limits) {
        addUnread(nested, {}, limit);
    }
    for (const Unread& unread : nested.unread) {
        member.limits.insert(unread.limit);
    }
    Part& part = member.part;
    part.package = true;
    part.piece = false;
    part.log = false;
    nested.source = part.member;
    nested.kind = kindOfFile(stemOf(part.member));
    nested.end = part.end;
    if (memory.keepName(rowMemory<Package>(part.member.size()))) {
        package.nested.push_back(std::move(nested));
    }
}

void PackageAssembler::addUnread(Package& package, const std::string& member, Limit limit) {
    if (memory.keepName(rowMemory<Unread>(member.size()))) {
        package.unread.push_back({member, limit});
    }
}

}  // namespace Report
