#include "Replies.hpp"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "Content.hpp"

namespace Report {
namespace {

using Lines = std::vector<std::string>;

bool isDigit(char character) {
    return std::isdigit(static_cast<unsigned char>(character)) != 0;
}

/// `name` consists of small letters.
bool startsWithName(std::string_view text, std::string_view name) {
    constexpr unsigned caseBit = 0x20;
    return text.size() >= name.size() &&
           std::equal(name.begin(), name.end(), text.begin(), [](char expected, char character) {
               return static_cast<unsigned>(expected) == (static_cast<unsigned char>(character) | caseBit);
           });
}

/// The line without numbers and without blanks at its end, and with a mark in place of the dispatcher's name.
std::string shapeOf(std::string_view line, std::string_view dispatcher) {
    std::string shape;
    shape.reserve(line.size());
    while (!line.empty()) {
        const bool isName = startsWithName(line, dispatcher);
        if (isName || !isDigit(line.front())) {
            shape += isName ? '*' : line.front();
        }
        line.remove_prefix(isName ? dispatcher.size() : 1);
    }
    shape.erase(shape.find_last_not_of(" \t\r") + 1);
    return shape;
}

Lines shapesOf(std::string_view text, std::string_view dispatcher) {
    Lines shapes;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        shapes.push_back(shapeOf(line, dispatcher));
    }
    return shapes;
}

/// Whether `start` is the beginning of `whole`, and less than all of it. The last line may be incomplete.
bool isStartOf(const Lines& start, const Lines& whole) {
    return !start.empty() && start.size() <= whole.size() && start != whole &&
           std::equal(start.begin(), start.end() - 1, whole.begin()) &&
           whole[start.size() - 1].starts_with(start.back());
}

Dispatcher otherThan(Dispatcher dispatcher) {
    return dispatcher == Dispatcher::iwf ? Dispatcher::sfn : Dispatcher::iwf;
}

}  // namespace

Replies::Replies(const Package& package) {
    for (const Part& part : package.parts) {
        const PartPlace place = placeOf(part.name);
        const bool considered = part.state == State::present || part.state == State::empty;
        if (!considered || place.known == nullptr || place.collector != Collector::mmi) {
            continue;
        }
        Reply reply;
        reply.place = place;
        reply.empty = part.state == State::empty;
        if (hasWholeText(part)) {
            const std::string text = evidenceTextOf(part);
            reply.lines = shapesOf(text, nameOf(place.dispatcher));
            reply.distinct.insert(reply.lines.begin(), reply.lines.end());
            reply.endsLine = text.back() == '\n';
        }
        replies.push_back(std::move(reply));
    }
}

const Replies::Reply* Replies::find(Dispatcher dispatcher, const PartPlace& place) const {
    const auto found = std::ranges::find_if(replies, [&](const Reply& reply) {
        return reply.place.dispatcher == dispatcher && reply.place.leaf == place.leaf;
    });
    return found == replies.end() ? nullptr : &*found;
}

/// The reply of the other dispatcher to the same command, or null if it is of no use.
const Replies::Reply* Replies::referenceFor(const PartPlace& place) const {
    const Dispatcher other = otherThan(place.dispatcher);
    const Reply* const reference = find(other, place);
    const bool useful = reference != nullptr && !reference->lines.empty() && !followsSilence(other, place);
    return useful ? reference : nullptr;
}

ReplyFault Replies::faultOf(const PartPlace& place) const {
    const Reply* const reply = find(place.dispatcher, place);
    if (reply == nullptr || reply->lines.empty()) {
        return ReplyFault::none;
    }
    const Reply* const reference = referenceFor(place);
    if (reference == nullptr) {
        return followsSilence(place.dispatcher, place) ? ReplyFault::late : ReplyFault::none;
    }
    if (isStartOf(reply->lines, reference->lines) && reference->endsLine) {
        return ReplyFault::shorter;
    }
    if (belongsElsewhere(*reply, *reference)) {
        return ReplyFault::late;
    }
    return !reply->endsLine && reference->endsLine ? ReplyFault::unended : ReplyFault::none;
}

/// Whether the reply has lines before the first one of the reference, or mostly lines of other replies.
bool Replies::belongsElsewhere(const Reply& reply, const Reply& reference) const {
    if (reply.lines == reference.lines) {  // as in most packages: the rest takes much longer
        return false;
    }
    const std::string& first = reference.lines.front();
    if (reply.lines.front() != first && reply.distinct.contains(first)) {
        return true;
    }
    const auto isForeign = [&](const std::string& line) {
        return !reference.distinct.contains(line) && std::ranges::any_of(replies, [&](const Reply& another) {
            return &another != &reply && another.distinct.contains(line);
        });
    };
    const auto foreign = static_cast<std::size_t>(std::ranges::count_if(reply.lines, isForeign));
    return foreign * 2 > reply.lines.size();
}

/// Whether the dispatcher left a command before this one unanswered.
bool Replies::followsSilence(Dispatcher dispatcher, const PartPlace& place) const {
    return std::ranges::any_of(replies, [&](const Reply& earlier) {
        return earlier.empty && earlier.place.dispatcher == dispatcher && earlier.place.known < place.known;
    });
}

}  // namespace Report
