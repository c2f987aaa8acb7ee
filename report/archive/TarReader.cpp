#include "TarReader.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <clocale>
#include <cstddef>
#include <cstdint>
#include <new>
#include <string>
#include <utility>

#include <archive.h>
#include <archive_entry.h>

#include "TarBlock.hpp"
#include "TarFeed.hpp"

namespace Report {

namespace {

constexpr std::size_t leastHeaderLimit = std::size_t{16} << 10;
constexpr std::array<char, std::size_t{16} << 10> zeros{};

/// libarchive converts the names in extended headers to the locale's character set. In the locale "C" it
/// leaves them alone: what is not ASCII cannot be converted, and comes as it is, with a warning.
class PlainNames {
public:
    PlainNames() : before(::uselocale(::newlocale(LC_ALL_MASK, "C", nullptr))) {}
    ~PlainNames() { ::uselocale(before); }
    PlainNames(const PlainNames&) = delete;
    PlainNames& operator=(const PlainNames&) = delete;
    PlainNames(PlainNames&&) = delete;
    PlainNames& operator=(PlainNames&&) = delete;

private:
    locale_t before;
};

MemberType typeOf(archive_entry* entry) {
    struct Row {
        __LA_MODE_T mode;
        MemberType type;
    };
    static constexpr std::array rows{
        Row{AE_IFREG, MemberType::file},         Row{AE_IFDIR, MemberType::directory},
        Row{AE_IFLNK, MemberType::symbolicLink}, Row{AE_IFCHR, MemberType::device},
        Row{AE_IFBLK, MemberType::device},       Row{AE_IFIFO, MemberType::fifo},
    };
    if (::archive_entry_hardlink(entry)) {
        return MemberType::hardLink;
    }
    const auto* row = std::ranges::find(rows, ::archive_entry_filetype(entry), &Row::mode);
    return row == rows.end() ? MemberType::other : row->type;
}

/// Copies names, and notes whether one had to be cut.
class NameCopy {
public:
    explicit NameCopy(std::size_t mostBytes) : most(mostBytes) {}

    std::string operator()(const char* name) {
        const std::string_view bytes = name ? name : "";
        cut = cut || bytes.size() > most;
        return std::string(bytes.substr(0, most));
    }

    bool wasCut() const { return cut; }

private:
    std::size_t most;
    bool cut = false;
};

TarMember memberOf(archive_entry* entry, std::size_t mostName) {
    NameCopy copy(mostName);
    TarMember member;
    MemberHeader& header = member.header;
    header.name = copy(::archive_entry_pathname(entry));
    header.nameCut = copy.wasCut();
    header.type = typeOf(entry);
    header.time = {::archive_entry_mtime(entry), ::archive_entry_mtime_nsec(entry)};
    header.mode = ::archive_entry_perm(entry);
    header.uid = static_cast<uid_t>(::archive_entry_uid(entry));
    header.gid = static_cast<gid_t>(::archive_entry_gid(entry));
    header.owner = copy(::archive_entry_uname(entry));
    header.group = copy(::archive_entry_gname(entry));
    const char* link = ::archive_entry_hardlink(entry);
    header.target = copy(link ? link : ::archive_entry_symlink(entry));
    if (header.type == MemberType::file) {
        header.size = static_cast<std::uint64_t>(std::max<std::int64_t>(::archive_entry_size(entry), 0));
    }
    member.cut = copy.wasCut();
    return member;
}

}  // namespace

class TarReader::Reader : public PieceSource {
public:
    Reader(PieceSource& tar, Budget& budget);

    std::optional<TarMember> nextMember();
    std::string_view next() override;

    LayerEnd ending;

private:
    struct CloseArchive {
        void operator()(archive* handle) const { ::archive_read_free(handle); }
    };

    static la_ssize_t feedLibarchive(archive* handle, void* feed, const void** buffer);
    bool accept(int result);
    void readEnd();
    void fail();
    bool stopAtLimit();
    void finish(LayerEnd end);
    void altered(const std::string& reason) { finish({Integrity::altered, reason, {}}); }
    bool nextPortion();
    std::string_view nextOfHole();

    Budget& limits;
    TarFeed feed;
    std::unique_ptr<archive, CloseArchive> handle;
    bool ended = false;
    // Of the current member:
    std::uint64_t size = 0;
    std::uint64_t position = 0;  ///< of the end of `portion`
    std::uint64_t hole = 0;      ///< zeros that come before `portion`
    std::string_view portion;
    bool complete = true;
};

TarReader::Reader::Reader(PieceSource& tar, Budget& budget)
    : limits(budget),
      feed(tar, std::max(leastHeaderLimit, 4 * budget.limits().maxName)),
      handle(::archive_read_new()) {
    if (!handle) {
        throw std::bad_alloc();
    }
    const PlainNames plainNames;
    ::archive_read_set_format(handle.get(), ARCHIVE_FORMAT_TAR);
    if (::archive_read_open(handle.get(), &feed, nullptr, feedLibarchive, nullptr) != ARCHIVE_OK) {
        fail();
    }
}

la_ssize_t TarReader::Reader::feedLibarchive(archive* handle, void* feed, const void** buffer) {
    auto& source = *static_cast<TarFeed*>(feed);
    const std::string_view bytes = source.next();
    if (source.failed()) {
        ::archive_set_error(handle, EIO, "no more input");
        return ARCHIVE_FATAL;
    }
    *buffer = bytes.data();
    return static_cast<la_ssize_t>(bytes.size());
}

std::optional<TarMember> TarReader::Reader::nextMember() {
    if (ended || stopAtLimit()) {
        return {};
    }
    const PlainNames plainNames;
    feed.beginData();
    if (::archive_file_count(handle.get()) > 0 && ::archive_read_data_skip(handle.get()) < ARCHIVE_WARN) {
        fail();
        return {};
    }
    feed.beginHeader();
    archive_entry* entry = nullptr;
    if (!accept(::archive_read_next_header(handle.get(), &entry))) {
        return {};
    }
    if (!limits.addMember() || !limits.checkTime()) {
        stopAtLimit();
        return {};
    }
    TarMember member = memberOf(entry, limits.limits().maxName);
    size = member.header.size;
    position = 0;
    hole = 0;
    portion = {};
    complete = member.header.type != MemberType::file;
    return member;
}

bool TarReader::Reader::accept(int result) {
    if (result == ARCHIVE_EOF) {
        readEnd();
        return false;
    }
    // The warning of this number is about a name that is not ASCII.
    const bool warning = result == ARCHIVE_WARN && ::archive_errno(handle.get()) == EILSEQ;
    if (result != ARCHIVE_OK && !warning) {
        fail();
        return false;
    }
    return true;
}

/// libarchive accepts an archive without the two blocks of zeros that mark its end.
void TarReader::Reader::readEnd() {
    const auto consumed = static_cast<std::uint64_t>(::archive_filter_bytes(handle.get(), 0));
    const auto mark = consumed - static_cast<std::uint64_t>(::archive_read_header_position(handle.get()));
    if (!feed.onlyZerosAfter(consumed)) {
        return altered("other data follow the end of the tar archive");
    }
    if (!stopAtLimit()) {
        const bool marked = mark >= 2 * tarBlockSize;
        finish(marked ? LayerEnd{}
                      : LayerEnd{Integrity::cut, "the tar archive has no complete end mark", {}});
    }
}

void TarReader::Reader::fail() {
    feed.rethrow();
    if (feed.tooLarge()) {
        finish({Integrity::notRead, "the headers of a member are too large", Limit::name});
    } else if (!feed.starved()) {
        const char* text = ::archive_error_string(handle.get());
        altered(std::string("the tar archive is damaged: ") + (text ? text : "unknown reason"));
    } else if (!stopAtLimit()) {
        finish({Integrity::cut, "the tar archive ends inside a member", {}});
    }
}

/// Whether a limit ended the reading.
bool TarReader::Reader::stopAtLimit() {
    if (limits.reached()) {
        finish(endByLimit(*limits.reached()));
    }
    return limits.reached().has_value();
}

void TarReader::Reader::finish(LayerEnd end) {
    ended = true;
    complete = true;
    ending = std::move(end);
}

std::string_view TarReader::Reader::next() {
    while (hole == 0 && portion.empty() && !complete) {
        if (stopAtLimit() || !nextPortion()) {
            return {};
        }
    }
    return hole > 0 ? nextOfHole() : std::exchange(portion, {});
}

/// Sets `portion`, and `hole` to what lies before it. At the end of the member, sets `complete`.
bool TarReader::Reader::nextPortion() {
    const void* bytes = nullptr;
    std::size_t count = 0;
    la_int64_t offset = 0;
    feed.beginData();
    const int result = ::archive_read_data_block(handle.get(), &bytes, &count, &offset);
    if (result != ARCHIVE_OK && result != ARCHIVE_EOF) {
        fail();
        return false;
    }
    complete = result == ARCHIVE_EOF;
    const std::uint64_t begin = complete ? size : static_cast<std::uint64_t>(offset);
    if (begin < position || begin > size || count > size - begin) {
        altered("the tar archive is damaged: the map of a sparse file is wrong");
        return false;
    }
    hole = begin - position;
    portion = {static_cast<const char*>(bytes), count};
    position = begin + count;
    return true;
}

std::string_view TarReader::Reader::nextOfHole() {
    const auto count =
        std::min<std::uint64_t>({hole, zeros.size(), std::max<std::uint64_t>(limits.bytesLeft(), 1)});
    if (!limits.inflate(count) || !limits.checkTime()) {
        stopAtLimit();
        return {};
    }
    hole -= count;
    return {zeros.data(), count};
}

TarReader::TarReader(PieceSource& tar, Budget& budget) : reader(std::make_unique<Reader>(tar, budget)) {
}

TarReader::~TarReader() = default;

std::optional<TarMember> TarReader::next() {
    return reader->nextMember();
}

PieceSource& TarReader::contents() {
    return *reader;
}

const LayerEnd& TarReader::end() const {
    return reader->ending;
}

}  // namespace Report
