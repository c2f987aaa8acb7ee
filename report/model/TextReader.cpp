#include "TextReader.hpp"

#include <algorithm>
#include <chrono>
#include <utility>

#include "EntryParser.hpp"
#include "ValueLine.hpp"
#include "ValueReader.hpp"

namespace Report {
namespace {

constexpr std::size_t tailSize = 256;
constexpr std::size_t decisiveSize = std::size_t{64} << 10;
constexpr std::size_t largestEvidence = std::size_t{64} << 10;
constexpr std::uint64_t longestReply = std::uint64_t{16} << 20;  // korvel collects no more of one source

/// Whether at least half of the lines of a text have a time, blank lines aside.
bool looksLikeLog(std::string_view text, const LogForms* forms) {
    std::size_t filled = 0;
    std::size_t timed = 0;
    LineSplitter lines(text.size());
    const auto count = [&](std::string_view line) {
        filled += trimLine(line).empty() ? 0 : 1;
        timed += startsEntry(line, forms) ? 1 : 0;
    };
    lines.add(text, count);
    if (filled == 0) {
        count(lines.rest());
    }
    return timed > 0 && 2 * timed >= filled;
}

/// The processor time for printing a text, at most: its log entries as JSON. Odd bytes are those that become
/// escapes there: control characters, and what is not ASCII.
std::chrono::nanoseconds printingTime(std::string_view text) {
    constexpr std::chrono::nanoseconds forLine{3000};
    constexpr std::chrono::nanoseconds forByte{5};
    constexpr std::chrono::nanoseconds forOddByte{100};
    const auto isOdd = [](unsigned char byte) { return (byte < ' ' && byte != '\n') || byte >= 0x7F; };
    return forLine * std::ranges::count(text, '\n') + forByte * text.size() +
           forOddByte * std::ranges::count_if(text, isOdd);
}

bool isBinary(std::string_view text) {
    return text.find('\0') != std::string_view::npos;
}

}  // namespace

TextReader::TextReader(Part& partOfText, std::vector<Value>& allValues, TextForm formOfText,
                       const Context& shared)
    : part(partOfText), values(allValues), form(formOfText), context(shared), lines(shared.maxLine) {
    begin();
}

TextReader::~TextReader() = default;

void TextReader::add(std::string_view bytes) {
    part.textSize += bytes.size();
    characters.add(bytes);
    updateTail(bytes);
    keepText(bytes);
    if (leftOut || !isUndecided()) {
        readLines(bytes);
        return;
    }
    undecided += bytes;
    if (undecided.size() >= decisiveSize) {
        decide();
    }
}

void TextReader::finish() {
    if (!leftOut && isUndecided()) {
        decide();
    }
    const bool cut = part.end.integrity != Integrity::whole || part.textSize == longestReply;
    if (reader && !reader->finish(lines.rest(), cut ? LineReader::End::cut : LineReader::End::complete)) {
        leaveOut(Limit::memory);
    }
    if (lines.cutLine() || (logReader != nullptr && logReader->hasLongEntry())) {
        limits.insert(Limit::line);
    }
    characters.finish();
    part.invalidBytes = characters.invalid();
    part.text.finish();
    static_cast<void>(countText());  // it has not grown
}

/// Begins to read lines if the form of the text is known.
void TextReader::begin() {
    if (form == TextForm::table) {
        reader = std::make_unique<ValueReader>(part, values, context.memory);
    } else if (form == TextForm::log || form == TextForm::archivedLog) {
        auto log = std::make_unique<LogReader>(part, form == TextForm::archivedLog, context.maxLine,
                                               context.memory, context.forms.get());
        logReader = log.get();
        reader = std::move(log);
        part.log = true;
    }
}

bool TextReader::isUndecided() const {
    return form == TextForm::plainOrLog || form == TextForm::tableOrLog;
}

void TextReader::decide() {
    const bool log = looksLikeLog(undecided, context.forms.get());
    const bool table = form == TextForm::tableOrLog && !isBinary(undecided);
    form = log ? TextForm::log : table ? TextForm::table : TextForm::plain;
    begin();
    readLines(undecided);
    undecided = {};
}

void TextReader::readLines(std::string_view bytes) {
    if (leftOut) {
        return;
    }
    bool fits = true;
    lines.add(bytes, [&](std::string_view line) { fits = fits && (!reader || reader->line(line)); });
    if (!fits) {
        leaveOut(Limit::memory);
    }
}

void TextReader::keepText(std::string_view bytes) {
    if (!keeping) {
        return;
    }
    if (!context.keepAll && part.textSize > largestEvidence) {
        keeping = false;
        dropText();
        return;
    }
    part.text.append(bytes);
    if (!countText()) {
        leaveOut(Limit::memory);
    } else if (!reservePrinting(bytes)) {
        leaveOut(Limit::seconds);
    }
}

/// Counts the memory that the kept text uses now.
bool TextReader::countText() {
    const std::size_t now = part.text.memory();
    if (now <= keptBytes) {
        context.memory.releaseContent(keptBytes - now);
    } else if (!context.memory.keepContent(now - keptBytes)) {
        return false;
    }
    keptBytes = now;
    return true;
}

/// Small texts that check keeps are not printed.
bool TextReader::reservePrinting(std::string_view bytes) {
    const std::chrono::nanoseconds time = context.keepAll ? printingTime(bytes) : std::chrono::nanoseconds{};
    if (!context.budget.reserve(time)) {
        return false;
    }
    printing += time;
    return true;
}

void TextReader::dropText() {
    context.budget.release(std::exchange(printing, {}));
    part.text = PackedText();
    context.memory.releaseContent(std::exchange(keptBytes, 0));
}

/// Keeps nothing of a text that exceeds a limit.
void TextReader::leaveOut(Limit limit) {
    limits.insert(limit);
    leftOut = true;
    keeping = false;
    dropText();
    if (reader) {
        reader->discard();
        reader.reset();
        logReader = nullptr;
    }
}

void TextReader::updateTail(std::string_view bytes) {
    if (bytes.size() >= tailSize) {
        part.tail = bytes.substr(bytes.size() - tailSize);
        return;
    }
    part.tail += bytes;
    part.tail.erase(0, part.tail.size() - std::min(part.tail.size(), tailSize));
}

}  // namespace Report
