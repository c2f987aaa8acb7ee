// Archives in and out. The first byte of the input says what the others are.

#include <string>
#include <string_view>

#include <zlib.h>

#include "EventRecorder.hpp"
#include "FuzzTarget.hpp"
#include "MemorySource.hpp"
#include "PackageBuilder.hpp"
#include "PackageReader.hpp"
#include "PackageWriter.hpp"
#include "SmallLimits.hpp"

namespace {

using Fuzz::require;

constexpr unsigned isTar = 1;             // else a whole package
constexpr unsigned correctChecksums = 2;  // of the headers of the tar archive
constexpr unsigned isNested = 4;
constexpr unsigned isWritten = 8;  // again, and the copy read

constexpr std::size_t blockSize = 512;

class StringSink : public Report::ByteSink {
public:
    void write(std::string_view bytes) override { content += bytes; }

    std::string content;
};

/// Checks the order of the events and the sizes of members, and copies what can be written.
class Checker : public ReportTest::EventRecorder {
public:
    Checker(Report::ByteSink& copy, Report::Budget& budget, bool write)
        : writer(copy, budget), copyable(write) {}

    void enterGzip() override {
        require(layers.empty() || layers.back() == 'g' || (layers.back() == 'm' && received == 0),
                "gzip fits");
        layers += 'g';
        write([this] { writer.enterGzip(); });
        EventRecorder::enterGzip();
    }
    void leaveGzip(const Report::LayerEnd& end) override {
        leave('g', end);
        write([this] { writer.leaveGzip(); });
        EventRecorder::leaveGzip(end);
    }
    void enterTar() override {
        require(layers.ends_with('g'), "tar is in gzip");
        layers += 't';
        write([this] { writer.enterTar(); });
        EventRecorder::enterTar();
    }
    void leaveTar(const Report::LayerEnd& end) override {
        leave('t', end);
        write([this] { writer.leaveTar(); });
        EventRecorder::leaveTar(end);
    }
    void beginMember(const Report::MemberHeader& header) override {
        require(layers.ends_with('t'), "a member is in tar");
        layers += 'm';
        size = header.size;
        received = 0;
        copyable = copyable && header.type != Report::MemberType::device &&
                   header.type != Report::MemberType::other && header.mode <= 07777;
        write([this, &header] { writer.beginMember(header); });
        Report::MemberHeader shown = header;
        shown.size = 0;  // of compressed bytes, a copy has another number
        EventRecorder::beginMember(shown);
    }
    void data(std::string_view bytes) override {
        require(!bytes.empty() && (layers.ends_with('m') || layers.ends_with('g')), "data fit");
        if (layers.ends_with('m')) {
            received += bytes.size();
            require(received <= size, "a member has as many bytes as its header says");
        }
        write([this, bytes] { writer.data(bytes); });
        EventRecorder::data(bytes);
    }
    void endMember(const Report::LayerEnd& end) override {
        leave('m', end);
        write([this] { writer.endMember(); });
        EventRecorder::endMember(end);
    }

    bool wasCopied() const { return copyable; }
    bool isClosed() const { return layers.empty(); }

private:
    void leave(char layer, const Report::LayerEnd& end) {
        require(layers.ends_with(layer), "layers end in order");
        require((end.integrity == Report::Integrity::whole) == end.reason.empty(), "damage has a reason");
        require((end.integrity == Report::Integrity::notRead) == end.limit.has_value(), "a limit is named");
        layers.pop_back();
        copyable = copyable && end.integrity == Report::Integrity::whole;
    }

    template <typename Call>
    void write(Call call) {
        if (copyable) {
            call();
        }
    }

    Report::PackageWriter writer;
    bool copyable;
    std::string layers;  ///< the open ones: g, t and m
    std::uint64_t size = 0;
    std::uint64_t received = 0;
};

std::string repaired(std::string tar) {
    for (std::size_t offset = 0; offset + blockSize <= tar.size(); offset += blockSize) {
        if (tar.compare(offset + 257, 5, "ustar") == 0) {
            ReportTest::correctChecksum(tar, offset);
        }
    }
    return tar;
}

/// A gzip stream that is not compressed, because that is faster.
std::string storedGzip(std::string_view bytes) {
    const auto number = [](std::uint64_t value, int size) {
        std::string text;
        for (int index = 0; index < size; ++index) {
            text += static_cast<char>(value >> (8 * index) & 0xffU);
        }
        return text;
    };
    constexpr std::size_t most = 0xffff;
    std::string packed("\x1f\x8b\x08\0\0\0\0\0\0\3", 10);
    std::string_view rest = bytes;
    do {
        const std::string_view block = rest.substr(0, most);
        rest.remove_prefix(block.size());
        packed += number(rest.empty() ? 1 : 0, 1) + number(block.size(), 2) + number(~block.size(), 2);
        packed += block;
    } while (!rest.empty());
    const auto checksum =
        ::crc32(0, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size()));
    return packed + number(checksum, 4) + number(bytes.size(), 4);
}

std::string packageOf(unsigned kind, std::string bytes) {
    if ((kind & correctChecksums) != 0) {
        bytes = repaired(bytes);
    }
    if ((kind & isTar) != 0) {
        bytes = storedGzip(bytes);
    }
    if ((kind & isNested) != 0) {
        bytes = storedGzip(ReportTest::PackageBuilder().file("nested", bytes).file("after", "x").tar());
    }
    return bytes;
}

/// Reads a package and returns its events. With `write`, sets `result` to a copy if all members can be
/// copied.
std::string eventsOf(const std::string& package, bool write, std::string& result) {
    ReportTest::MemorySource source(package);
    Report::Budget budget(ReportFuzz::smallLimits());
    StringSink sink;
    Checker checker(sink, budget, write);
    const Report::PackageFacts facts = readPackage(source, budget, checker);
    require(checker.isClosed(), "all layers end");
    require(facts.size == package.size(), "the package is read to its end");
    require(!checker.wasCopied() || facts.end.integrity == Report::Integrity::whole ||
                facts.end.integrity == Report::Integrity::altered,
            "a package of whole layers is not cut");
    result = checker.wasCopied() ? sink.content : std::string();
    return checker.text();
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    std::string copy;
    const unsigned kind = data[0];
    const std::string package = packageOf(kind, std::string(Fuzz::textOf(data + 1, size - 1)));
    const std::string events = eventsOf(package, (kind & isWritten) != 0, copy);
    if (!copy.empty()) {
        std::string second;
        require(eventsOf(copy, true, second) == events, "a copy has the same members");
        require(second == copy, "a copy of a copy is the same");
    }
    return 0;
}
