#include "TarWriter.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iomanip>
#include <numeric>
#include <sstream>
#include <stdexcept>
#include <string>

#include "TarBlock.hpp"

namespace Report {

namespace {

/// Fields of a header: offset and size in bytes.
struct Field {
    std::size_t offset;
    std::size_t size;
};

constexpr Field nameField{0, 100};
constexpr Field modeField{100, 8};
constexpr Field uidField{108, 8};
constexpr Field gidField{116, 8};
constexpr Field sizeField{124, 12};
constexpr Field timeField{136, 12};
constexpr Field typeField{156, 1};
constexpr Field targetField{157, 100};
constexpr Field magicField{257, 8};
constexpr Field ownerField{265, 32};
constexpr Field groupField{297, 32};

constexpr std::string_view gnuMagic = "ustar  ";
constexpr std::string_view endMark(tarEndMark.data(), tarEndMark.size());

char typeOf(MemberType type) {
    struct Row {
        MemberType type;
        char letter;
    };
    static constexpr std::array rows{
        Row{MemberType::file, '0'},     Row{MemberType::directory, '5'}, Row{MemberType::symbolicLink, '2'},
        Row{MemberType::hardLink, '1'}, Row{MemberType::fifo, '6'},
    };
    const auto* row = std::ranges::find(rows, type, &Row::type);
    if (row == rows.end()) {
        throw std::invalid_argument("a member of this type cannot be written");
    }
    return row->letter;
}

void putText(std::string& block, const Field& field, std::string_view text) {
    const std::string_view fitting = text.substr(0, field.size);
    block.replace(field.offset, fitting.size(), fitting);
}

/// In octal, and if that needs too many digits or the number is negative, in binary.
void putNumber(std::string& block, const Field& field, std::int64_t number) {
    const std::size_t digits = field.size - 1;
    if (number >= 0 && number < std::int64_t{1} << (3 * digits)) {
        std::ostringstream text;
        text << std::oct << std::setw(static_cast<int>(digits)) << std::setfill('0') << number;
        return putText(block, field, text.str());
    }
    auto bits = static_cast<std::uint64_t>(number);
    for (std::size_t at = field.offset + field.size; at-- > field.offset;) {
        block[at] = static_cast<char>(bits & 0xffU);
        bits = number < 0 ? (bits >> 8U) | 0xff00'0000'0000'0000U : bits >> 8U;
    }
    block[field.offset] = static_cast<char>(number < 0 ? 0xff : 0x80);
}

void putChecksum(std::string& block) {
    std::ostringstream text;
    text << std::oct << std::setw(6) << std::setfill('0') << tarChecksum(block) << '\0' << ' ';
    block.replace(tarChecksumAt, tarChecksumSize, text.str());
}

std::string paxRecord(std::string_view key, const std::string& value) {
    const std::string text = " " + std::string(key) + "=" + value + "\n";
    std::size_t size = text.size() + 1;  // the number counts its own digits
    while (size != text.size() + std::to_string(size).size()) {
        ++size;
    }
    return std::to_string(size) + text;
}

std::string timeText(const std::timespec& time) {
    std::ostringstream text;
    text << time.tv_sec << '.' << std::setw(9) << std::setfill('0') << time.tv_nsec;
    return text.str();
}

/// What a plain header cannot hold.
std::string paxRecords(const MemberHeader& header) {
    std::string records;
    if (header.time.tv_nsec != 0) {
        records += paxRecord("mtime", timeText(header.time));
    }
    if (header.owner.size() >= ownerField.size) {
        records += paxRecord("uname", header.owner);
    }
    if (header.group.size() >= groupField.size) {
        records += paxRecord("gname", header.group);
    }
    return records;
}

std::string headerBlock(const MemberHeader& header, char type, std::uint64_t size) {
    std::string block(tarBlockSize, '\0');
    putText(block, nameField, header.name);
    putNumber(block, modeField, header.mode);
    putNumber(block, uidField, header.uid);
    putNumber(block, gidField, header.gid);
    putNumber(block, sizeField, static_cast<std::int64_t>(size));
    putNumber(block, timeField, header.time.tv_sec);
    putText(block, typeField, {&type, 1});
    putText(block, targetField, header.target);
    putText(block, magicField, gnuMagic);
    putText(block, ownerField, std::string_view(header.owner).substr(0, ownerField.size - 1));
    putText(block, groupField, std::string_view(header.group).substr(0, groupField.size - 1));
    putChecksum(block);
    return block;
}

}  // namespace

void TarWriter::beginMember(const MemberHeader& header, std::uint64_t size) {
    const char type = typeOf(header.type);
    const std::string records = paxRecords(header);
    if (!records.empty()) {
        writeSpecial('x', "././@PaxHeader", records);
    }
    if (header.target.size() > targetField.size) {
        writeSpecial('K', "././@LongLink", header.target + '\0');
    }
    if (header.name.size() > nameField.size) {
        writeSpecial('L', "././@LongLink", header.name + '\0');
    }
    out.write(headerBlock(header, type, size));
    promised = size;
    written = 0;
}

void TarWriter::writeSpecial(char type, std::string_view name, std::string_view contents) {
    MemberHeader header;
    header.name = name;
    out.write(headerBlock(header, type, contents.size()));
    written = 0;
    write(contents);
    pad();
}

void TarWriter::write(std::string_view bytes) {
    out.write(bytes);
    written += bytes.size();
}

void TarWriter::pad() {
    if (written % tarBlockSize != 0) {
        out.write(endMark.substr(0, tarBlockSize - written % tarBlockSize));
    }
}

void TarWriter::endMember() {
    if (written != promised) {
        throw std::logic_error("a member has another size than its header says");
    }
    pad();
}

void TarWriter::finish() {
    out.write(endMark);
}

}  // namespace Report
