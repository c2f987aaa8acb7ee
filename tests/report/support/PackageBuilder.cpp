#include "PackageBuilder.hpp"

#include <cstdio>
#include <numeric>
#include <stdexcept>

#include <zlib.h>

namespace ReportTest {

namespace {

constexpr std::size_t blockSize = 512;
constexpr std::size_t shortName = 100;
constexpr std::size_t checksumAt = 148;
constexpr int gzipFormat = 15 + 16;

void put(std::string& header, std::size_t offset, std::string_view text) {
    header.replace(offset, text.size(), text);
}

void putNumber(std::string& header, std::size_t offset, int digits, std::uint64_t number) {
    char text[32];
    std::snprintf(text, sizeof text, "%0*llo", digits, static_cast<unsigned long long>(number));
    put(header, offset, text);
}

/// Runs deflate() or inflate() over `input` until it ends.
template <typename Step>
std::string run(z_stream& stream, std::string_view input, Step step) {
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(input.data()));
    stream.avail_in = static_cast<uInt>(input.size());
    std::string output;
    std::string buffer(std::size_t{1} << 16, '\0');
    int result = Z_OK;
    while (result == Z_OK) {
        stream.next_out = reinterpret_cast<Bytef*>(buffer.data());
        stream.avail_out = static_cast<uInt>(buffer.size());
        result = step();
        output.append(buffer, 0, buffer.size() - stream.avail_out);
    }
    if (result != Z_STREAM_END) {
        throw std::runtime_error("zlib fails in a test");
    }
    return output;
}

}  // namespace

std::string tarHeader(const TarFields& fields) {
    std::string header(blockSize, '\0');
    put(header, 0, fields.name);
    putNumber(header, 100, 7, fields.mode);
    putNumber(header, 108, 7, fields.uid);
    putNumber(header, 116, 7, fields.gid);
    putNumber(header, 124, 11, fields.size);
    putNumber(header, 136, 11, static_cast<std::uint64_t>(fields.time));
    header[156] = fields.type;
    put(header, 157, fields.target);
    put(header, 257, "ustar  ");
    put(header, 265, fields.owner);
    put(header, 297, fields.group);
    correctChecksum(header);
    return header;
}

void correctChecksum(std::string& tar, std::size_t offset) {
    put(tar, offset + checksumAt, "        ");
    const auto begin = tar.begin() + static_cast<std::ptrdiff_t>(offset);
    const auto add = [](std::uint64_t sum, char byte) { return sum + static_cast<unsigned char>(byte); };
    putNumber(tar, offset + checksumAt, 6, std::accumulate(begin, begin + blockSize, std::uint64_t{0}, add));
    tar[offset + checksumAt + 6] = '\0';
}

std::string tarBlocks(std::string_view contents) {
    std::string blocks(contents);
    blocks.resize((contents.size() + blockSize - 1) / blockSize * blockSize);
    return blocks;
}

std::string tarEndMark() {
    std::string mark(2 * blockSize, '\0');
    return mark;
}

std::string paxRecord(std::string_view key, std::string_view value) {
    const std::string text = " " + std::string(key) + "=" + std::string(value) + "\n";
    std::size_t size = text.size();
    while (size != text.size() + std::to_string(size).size()) {
        size = text.size() + std::to_string(size).size();
    }
    return std::to_string(size) + text;
}

std::string gzip(std::string_view bytes, int level) {
    z_stream stream{};
    deflateInit2(&stream, level, Z_DEFLATED, gzipFormat, 8, Z_DEFAULT_STRATEGY);
    std::string packed = run(stream, bytes, [&stream] { return ::deflate(&stream, Z_FINISH); });
    ::deflateEnd(&stream);
    return packed;
}

std::string gunzip(std::string_view packed) {
    z_stream stream{};
    inflateInit2(&stream, gzipFormat);
    std::string bytes = run(stream, packed, [&stream] { return ::inflate(&stream, Z_NO_FLUSH); });
    ::inflateEnd(&stream);
    return bytes;
}

PackageBuilder& PackageBuilder::at(std::time_t time) {
    fields.time = time;
    return *this;
}

PackageBuilder& PackageBuilder::ownedBy(const std::string& owner, const std::string& group) {
    fields.owner = owner;
    fields.group = group;
    return *this;
}

PackageBuilder& PackageBuilder::mode(unsigned permissions) {
    fields.mode = permissions;
    return *this;
}

PackageBuilder& PackageBuilder::file(const std::string& name, std::string_view contents) {
    return add(name, '0', contents);
}

PackageBuilder& PackageBuilder::directory(const std::string& name) {
    return add(name, '5', {});
}

PackageBuilder& PackageBuilder::symbolicLink(const std::string& name, const std::string& target) {
    return add(name, '2', {}, target);
}

PackageBuilder& PackageBuilder::hardLink(const std::string& name, const std::string& target) {
    return add(name, '1', {}, target);
}

PackageBuilder& PackageBuilder::special(const std::string& name, char type) {
    return add(name, type, {});
}

PackageBuilder& PackageBuilder::pax(std::string_view records) {
    return add("pax", 'x', records);
}

PackageBuilder& PackageBuilder::raw(std::string_view added) {
    blocks += added;
    return *this;
}

PackageBuilder& PackageBuilder::add(const std::string& name, char type, std::string_view contents,
                                    const std::string& target) {
    if (name.size() > shortName) {
        write("././@LongLink", 'L', name + '\0', {});
    }
    if (target.size() > shortName) {
        write("././@LongLink", 'K', target + '\0', {});
    }
    return write(name.substr(0, shortName), type, contents, target.substr(0, shortName));
}

PackageBuilder& PackageBuilder::write(const std::string& name, char type, std::string_view contents,
                                      const std::string& target) {
    TarFields member = fields;
    member.name = name;
    member.type = type;
    member.size = contents.size();
    member.target = target;
    return raw(tarHeader(member)).raw(tarBlocks(contents));
}

std::string PackageBuilder::tar() const {
    return blocks + tarEndMark();
}

std::string PackageBuilder::tgz() const {
    return gzip(tar());
}

}  // namespace ReportTest
