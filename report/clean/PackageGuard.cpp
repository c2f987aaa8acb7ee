#include "PackageGuard.hpp"

#include <algorithm>
#include <array>

#include "CleanRefusal.hpp"
#include "MemberName.hpp"

namespace Report {

namespace {

using namespace std::string_view_literals;

/// The first bytes of files that are compressed in other ways. Their contents cannot be read.
constexpr std::array compressedStarts{
    "\xfd"
    "7zXZ\0"sv,
    "BZh91AY&SY"sv,
    "\x28\xb5\x2f\xfd"sv,
    "PK\x03\x04"sv,
    "\x04\x22\x4d\x18"sv,
    "7z\xbc\xaf\x27\x1c"sv};

constexpr std::size_t longestStart = 10;

/// About what an entry of a set needs besides its text.
constexpr std::size_t memoryOfName = 64;

/// What a member is that has no contents to read; empty for files and folders.
std::string_view unfollowed(MemberType type) {
    switch (type) {
        case MemberType::file:
        case MemberType::directory:
            return {};
        case MemberType::symbolicLink:
        case MemberType::hardLink:
            return "it is a link, which is not followed";
        case MemberType::device:
            return "it is a device, which is not read";
        case MemberType::fifo:
            return "it is a FIFO, which is not read";
        case MemberType::other:
            break;
    }
    return "it is neither a file nor a folder";
}

}  // namespace

/// After a problem, nothing is passed on, since the result is of no use.
template <typename Event>
void PackageGuard::forward(Event event) {
    if (problem.empty()) {
        event();
    }
}

void PackageGuard::note(std::string_view reason) {
    if (!problem.empty() || reason.empty()) {
        return;
    }
    for (const std::string& member : members) {
        problem += member + ": ";
    }
    problem += reason;
}

void PackageGuard::enterGzip() {
    start.clear();
    forward([&] { next.enterGzip(); });
}

void PackageGuard::leaveGzip(const LayerEnd& end) {
    check(end);
    forward([&] { next.leaveGzip(end); });
}

void PackageGuard::enterTar() {
    names.emplace_back();
    forward([&] { next.enterTar(); });
}

void PackageGuard::leaveTar(const LayerEnd& end) {
    check(end);
    names.pop_back();
    forward([&] { next.leaveTar(end); });
}

void PackageGuard::beginMember(const MemberHeader& header) {
    members.push_back(header.name);
    note(oddName(header.name));
    note(unfollowed(header.type));
    const auto [name, added] = names.back().insert(normalName(header.name));
    if (added) {
        static_cast<void>(budget.keep(name->size() + memoryOfName));
    } else {
        note("there are two members of this name");
    }
    start.clear();
    forward([&] { next.beginMember(header); });
}

void PackageGuard::data(std::string_view bytes) {
    if (start.size() < longestStart) {
        start += bytes.substr(0, longestStart - start.size());
        if (std::ranges::any_of(compressedStarts, [this](auto known) { return start.starts_with(known); })) {
            note("it is compressed in a form that is not read");
        }
    }
    forward([&] { next.data(bytes); });
}

void PackageGuard::endMember(const LayerEnd& end) {
    check(end);
    members.pop_back();
    forward([&] { next.endMember(end); });
}

/// The end of the package itself is checked last, when all of it is known.
void PackageGuard::check(const LayerEnd& end) {
    if (!members.empty() && end.integrity != Integrity::whole) {
        note(end.reason);
    }
}

void PackageGuard::checkEnd(const PackageFacts& facts) const {
    const Integrity integrity = facts.end.integrity;
    if (integrity == Integrity::cut || integrity == Integrity::altered) {
        throw CleanRefusal(CleanRefusal::damaged, package + ": " + facts.end.reason);
    }
    const std::string& reason = integrity == Integrity::whole ? problem : facts.end.reason;
    if (!reason.empty()) {
        throw CleanRefusal(CleanRefusal::notClean, package + ": " + reason);
    }
}

}  // namespace Report
