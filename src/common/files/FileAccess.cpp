#include "FileAccess.hpp"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>

#include "Console.hpp"
#include "FileExchange.hpp"
#include "FileHelper.hpp"
#include "Wait.hpp"

namespace Korvel {
namespace {

using Kind = FileQuestion::Kind;

constexpr std::chrono::seconds patience{5};
constexpr std::size_t largestReserve = 16U << 20U;  // a reported file size may be wrong

FileHelper& fileHelper() {
    static FileHelper helper;
    return helper;
}

void reportError(const std::string& path, int error) {
    fail("Error while reading ", path, ": ", std::strerror(error));
}

/// A sequence of requests about one file, with a common deadline.
class Look {
public:
    explicit Look(const std::string& path) : isNameable(path.size() < question.path.size()) {
        if (isNameable) {
            path.copy(question.path.data(), path.size());
        }
    }

    void setAccessMode(int mode) { question.accessMode = mode; }
    void setOwner(std::optional<uid_t> owner) { question.owner = owner; }

    FileAnswer ask(Kind kind) {
        if (!isNameable) {
            return {.error = ENAMETOOLONG};
        }
        question.kind = kind;
        const FileExchange& exchange = fileHelper().ask(question, deadline);
        content = {exchange.piece.data(), exchange.answer.size};
        return exchange.answer;
    }

    /// The data of the last answer; valid until the next request.
    std::string_view piece() const { return content; }

private:
    FileQuestion question;
    bool isNameable;
    Deadline deadline = deadlineIn(patience);
    std::string_view content;
};

/// Sends a request and reports a time-out, the only unexpected failure.
FileAnswer askBriefly(Look& look, Kind kind, const std::string& path) {
    const FileAnswer answer = look.ask(kind);
    if (answer.error == ETIMEDOUT) {
        reportError(path, answer.error);
    }
    errno = answer.error;
    return answer;
}

/// Reads all pieces of the opened file, and closes it.
void readPieces(Look& look, std::string& text, std::size_t limit, FileReading& reading) {
    FileAnswer answer = look.ask(Kind::read);
    while (answer.error == 0 && answer.size > 0) {
        reading.cut = !appendWithin(limit, text, look.piece());
        answer = reading.cut ? FileAnswer{} : look.ask(Kind::read);
    }
    reading.error = answer.error;
    if (reading.error != ETIMEDOUT && look.ask(Kind::close).error == ETIMEDOUT && reading.error == 0) {
        reading.error = ETIMEDOUT;
    }
}

}  // namespace

bool isAccessible(const std::string& path, int mode) {
    Look look(path);
    look.setAccessMode(mode);
    return askBriefly(look, Kind::access, path).error == 0;
}

std::optional<FileState> stateOf(const std::string& path) {
    Look look(path);
    const FileAnswer answer = askBriefly(look, Kind::state, path);
    return answer.error == 0 ? std::optional(answer.state) : std::nullopt;
}

FileReading readFile(const std::string& path, std::string& text, const ReadingRules& rules) {
    Look look(path);
    look.setOwner(rules.owner);
    const FileAnswer answer = look.ask(Kind::open);
    FileReading reading{
        .opened = answer.error == 0, .error = answer.error, .cut = false, .state = answer.state};
    if (reading.opened) {
        text.clear();
        // Reserve memory, because a growing string temporarily needs more than twice its size.
        const auto expected = static_cast<std::size_t>(std::max<off_t>(reading.state.size, 0));
        text.reserve(std::min({expected, rules.sizeLimit, largestReserve}));
        readPieces(look, text, rules.sizeLimit, reading);
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
