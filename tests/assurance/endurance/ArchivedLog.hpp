#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ArchiveFiles.hpp"
#include "StreamedLog.hpp"

/// Where the bytes of a log are.
struct Balance {
    std::uint64_t produced = 0;  ///< since the archiver began to read
    std::uint64_t stored = 0;    ///< in the files at the end of a run
    std::uint64_t dropped = 0;   ///< in pieces that a later piece replaced; each was whole
    std::uint64_t lost =
        0;  ///< overwritten before the archiver read them, or after its file failed; announced
    std::uint64_t rotations = 0;
    std::uint64_t failedRotations = 0;
    std::uint64_t warnings = 0;

    Balance& operator+=(const Balance& other);
    bool isEven() const { return produced == stored + dropped + lost; }
};

/// Follows a log and its archive during one run of the archiver, byte for byte. Each function throws if the
/// archive has other bytes than the log, or lacks some without an announcement.
class ArchivedLog {
public:
    /// The archiver has not begun yet, and there is no archive.
    ArchivedLog(StreamedLog& followed, const std::string& shortName);

    /// Before the archiver reads the log.
    void expectRead();

    /// After it. `announced`: it has reported that the file failed. `failedCommands`: how many commands of
    /// both logs failed meanwhile.
    void check(bool announced, unsigned failedCommands);

    /// After the end of the archiver: compares the files with what they were. Returns the whole balance.
    Balance finish();

    bool isIdle() const { return idle; }
    const ArchiveFiles& files() const { return archive; }
    std::uint64_t runtimeSize() const { return runtime.size(); }
    const Balance& soFar() const { return balance; }

private:
    /// Tells apart the files that have had the same name.
    using Identity = std::pair<std::uint64_t, std::int64_t>;

    struct Piece {
        std::string path;
        Identity identity = {};
        std::string text = {};
        std::uint64_t warnings = 0;  // lines of the archiver in this text
    };

    static Identity identityOf(const std::string& path);
    bool isReplaced(Piece& piece);
    void checkPiece(Piece& piece, std::string text);
    void checkRotation(bool rotated, unsigned failedCommands);
    void checkNews(std::string_view news, bool cut);
    std::uint64_t offsetOf(std::string_view text, bool warned, bool cut) const;
    static std::uint64_t bytesOf(const Piece& piece);

    StreamedLog& log;
    ArchiveFiles archive;
    Piece startup;
    Piece middle;
    std::string runtime;  // the text of runtime.log
    std::uint64_t runtimeWarnings = 0;
    std::uint64_t beginning = 0;  // offset at which the archiver began
    std::uint64_t position = 0;   // offset up to which it has read
    std::uint64_t endBefore = 0;
    std::uint64_t oldestBefore = 0;
    bool hasRead = false;
    bool idle = false;
    Balance balance;
};
