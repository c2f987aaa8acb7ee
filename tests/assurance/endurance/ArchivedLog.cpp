#include "ArchivedLog.hpp"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <utility>

#include <sys/stat.h>

namespace {

constexpr std::string_view warning = "WARNING: Shared memory overlap. Log is missing entries\n";
constexpr std::uint64_t threshold = 2097152;  // bytes of the log

void require(bool condition, const std::string& what) {
    if (!condition) {
        throw std::runtime_error(what);
    }
}

/// The text of a file from an offset. The bytes before it are compared when the file is rotated.
std::string textAfter(const std::string& path, std::size_t offset) {
    const std::size_t size = std::filesystem::file_size(path);
    require(size >= offset, path + " has lost bytes");
    std::string text(size - offset, '\0');
    std::ifstream file(path, std::ios::binary);
    file.seekg(static_cast<std::streamoff>(offset));
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    require(file.good(), path + " cannot be read");
    return text;
}

}  // namespace

Balance& Balance::operator+=(const Balance& other) {
    produced += other.produced;
    stored += other.stored;
    dropped += other.dropped;
    lost += other.lost;
    rotations += other.rotations;
    failedRotations += other.failedRotations;
    warnings += other.warnings;
    return *this;
}

ArchivedLog::ArchivedLog(StreamedLog& followed, const std::string& shortName)
    : log(followed),
      archive(shortName),
      startup{.path = archive.startupPath + ".gz"},
      middle{.path = archive.middlePath + ".gz"} {
}

void ArchivedLog::expectRead() {
    endBefore = log.end();
    oldestBefore = log.oldest();
}

void ArchivedLog::check(bool announced, unsigned failedCommands) {
    if (idle) {
        return;
    }
    Piece& piece = middle.text.empty() && startup.text.empty() ? startup : middle;
    const bool rotated = isReplaced(piece);
    if (rotated) {
        checkPiece(piece, &piece == &startup ? archive.startup() : archive.middle());
    } else {
        const std::string news = textAfter(archive.runtimePath, runtime.size());
        checkNews(news, announced);
        runtime += news;
    }
    idle = announced;
    checkRotation(rotated, failedCommands);
    hasRead = true;
}

/// False also if a failed compression has removed the piece: gzip removes the earlier file first.
bool ArchivedLog::isReplaced(Piece& piece) {
    const Identity now = identityOf(piece.path);
    if (now == piece.identity) {
        return false;
    }
    balance.dropped += bytesOf(piece);
    piece = {.path = piece.path, .identity = now};
    return now != Identity{};
}

void ArchivedLog::checkPiece(Piece& piece, std::string text) {
    require(text.starts_with(runtime), piece.path + " does not begin with the text of runtime.log");
    checkNews(std::string_view(text).substr(runtime.size()), false);
    piece.text = std::move(text);
    piece.warnings = std::exchange(runtimeWarnings, 0);
    runtime.clear();
    require(textAfter(archive.runtimePath, 0).empty(),
            archive.runtimePath + " is not empty after a rotation");
}

/// The threshold counts the bytes of the log only.
void ArchivedLog::checkRotation(bool rotated, unsigned failedCommands) {
    if (rotated) {
        ++balance.rotations;
    } else if (!idle && runtime.size() - runtimeWarnings * warning.size() >= threshold) {
        ++balance.failedRotations;
        require(failedCommands > 0, archive.runtimePath + " was not rotated, and nobody says so");
    }
}

/// `news`: what the archiver appended now. `cut`: the end of it may be missing.
void ArchivedLog::checkNews(std::string_view news, bool cut) {
    const bool warned = news.starts_with(warning);
    if (warned) {
        news.remove_prefix(warning.size());
        ++runtimeWarnings;
        ++balance.warnings;
    }
    const std::uint64_t from = offsetOf(news, warned, cut);
    if (hasRead) {
        balance.lost += from - position;
    } else {
        beginning = from;
    }
    position = from + news.size();
}

/// The archiver reads everything that is there. It continues where it was. For the first time, or with a
/// warning, it begins with the oldest entry, which may have changed if it wrote entries itself before.
std::uint64_t ArchivedLog::offsetOf(std::string_view text, bool warned, bool cut) const {
    const bool withOldest = warned || !hasRead;
    const std::uint64_t first = withOldest ? oldestBefore : position;
    const std::uint64_t last = first + (withOldest ? log.end() - endBefore + StreamedLog::largest : 0);
    for (std::uint64_t from = first; from <= last && from + text.size() <= log.end(); ++from) {
        const bool isWhole = from + text.size() >= endBefore;
        if ((isWhole || cut) && log.between(from, from + text.size()) == text) {
            return from;
        }
    }
    throw std::runtime_error(archive.runtimePath +
                             " has other bytes than the log, or lacks some without a warning");
}

Balance ArchivedLog::finish() {
    require(archive.startup() == startup.text, startup.path + " has changed");
    require(archive.middle() == middle.text, middle.path + " has changed");
    require(textAfter(archive.runtimePath, 0) == runtime, archive.runtimePath + " has changed");
    balance.produced = log.end() - beginning;
    balance.stored = bytesOf(startup) + bytesOf(middle) + runtime.size() - runtimeWarnings * warning.size();
    if (idle) {
        balance.lost += log.end() - position;
    } else {
        balance.produced -= log.end() - position;  // nobody has read that
    }
    require(balance.isEven(), archive.directory + ": the bytes do not add up");
    return balance;
}

std::uint64_t ArchivedLog::bytesOf(const Piece& piece) {
    return piece.text.size() - piece.warnings * warning.size();
}

ArchivedLog::Identity ArchivedLog::identityOf(const std::string& path) {
    struct stat state {};
    if (::stat(path.c_str(), &state) != 0) {
        return {};
    }
    return {state.st_ino,
            static_cast<std::int64_t>(state.st_ctim.tv_sec) * 1'000'000'000 + state.st_ctim.tv_nsec};
}
