#include "FileAccess.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>

#include "Console.hpp"
#include "FileExchange.hpp"
#include "FileHelper.hpp"
#include "Wait.hpp"

namespace Korvel {
namespace {

using Kind = FileRequest::Kind;

constexpr std::chrono::seconds fileTimeout{5};
constexpr std::size_t maximumReserve = 16U << 20U;  // a reported file size may be wrong

FileHelper& fileHelper() {
    static FileHelper helper;
    return helper;
}

void reportError(const std::string& path, int error) {
    fail("Error while reading ", path, ": ", std::strerror(error));
}

/// A sequence of requests about one file, with a common deadline.
class FileSession {
public:
    explicit FileSession(const std::string& path) : pathFits(path.size() < request.path.size()) {
        if (pathFits) {
            path.copy(request.path.data(), path.size());
        }
    }

    void setAccessMode(int mode) { request.accessMode = mode; }
    void setOwner(std::optional<uid_t> owner) { request.owner = owner; }

    FileResponse query(Kind kind) {
        if (!pathFits) {
            return {.error = ENAMETOOLONG};
        }
        request.kind = kind;
        const FileExchange& exchange = fileHelper().query(request, deadline);
        content = {exchange.piece.data(), exchange.response.size};
        return exchange.response;
    }

    /// The data of the last response; valid until the next request.
    std::string_view piece() const { return content; }

private:
    FileRequest request;
    bool pathFits;
    Deadline deadline = deadlineIn(fileTimeout);
    std::string_view content;
};

/// Sends a request, and reports an error that does not tell whether the file is there. Sets errno.
FileResponse queryExistence(FileSession& session, Kind kind, const std::string& path) {
    constexpr std::array answers{0, ENOENT, ENOTDIR, EACCES};
    const FileResponse response = session.query(kind);
    if (std::ranges::find(answers, response.error) == answers.end()) {
        reportError(path, response.error);
    }
    errno = response.error;
    return response;
}

/// Reads all pieces of the opened file, and closes it.
void readPieces(FileSession& session, std::string& text, std::size_t limit, FileReading& reading) {
    FileResponse response = session.query(Kind::read);
    while (response.error == 0 && response.size > 0) {
        reading.cut = !appendWithin(limit, text, session.piece());
        response = reading.cut ? FileResponse{} : session.query(Kind::read);
    }
    reading.error = response.error;
    if (reading.error != ETIMEDOUT && session.query(Kind::close).error == ETIMEDOUT && reading.error == 0) {
        reading.error = ETIMEDOUT;
    }
}

}  // namespace

bool isAccessible(const std::string& path, int mode) {
    FileSession session(path);
    session.setAccessMode(mode);
    return queryExistence(session, Kind::access, path).error == 0;
}

std::optional<FileState> stateOf(const std::string& path) {
    FileSession session(path);
    const FileResponse response = queryExistence(session, Kind::state, path);
    return response.error == 0 ? std::optional(response.state) : std::nullopt;
}

FileReading readFile(const std::string& path, std::string& text, const ReadingRules& rules) {
    FileSession session(path);
    session.setOwner(rules.owner);
    const FileResponse response = session.query(Kind::open);
    FileReading reading{
        .opened = response.error == 0, .error = response.error, .cut = false, .state = response.state};
    if (reading.opened) {
        text.clear();
        // Reserve memory, because a growing string temporarily needs more than twice its size.
        const auto expected = static_cast<std::size_t>(std::max<off_t>(reading.state.size, 0));
        text.reserve(std::min({expected, rules.sizeLimit, maximumReserve}));
        readPieces(session, text, rules.sizeLimit, reading);
    }
    return reading;
}

void reportReading(const std::string& path, const FileReading& reading, const ReadingRules& rules) {
    if (!reading.opened && reading.error != ETIMEDOUT) {
        fail("Error while opening ", path);
    } else if (reading.error != 0) {
        reportError(path, reading.error);
    }
    if (reading.cut) {
        fail(path, " is larger than ", rules.sizeLimit, " bytes, cut");
    }
}

void dismissFileHelper() {
    fileHelper().dismiss();
}

}  // namespace Korvel
