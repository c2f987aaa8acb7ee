#include "Difference.hpp"

#include <algorithm>
#include <chrono>
#include <deque>
#include <iterator>
#include <map>
#include <set>
#include <string_view>
#include <utility>

namespace Report {
namespace {

using Parts = std::map<std::string_view, PartText>;

/// The parts of a package by name, without those that are missing.
Parts partsOf(const Package& package) {
    Parts parts;
    for (const Part& part : package.parts) {
        if (part.state != State::missing) {
            parts[part.name].members.push_back(&part);
        }
    }
    for (const Value& value : package.values) {
        parts[value.part].values.push_back(&value);
    }
    return parts;
}

/// Whether the package was read to its end, so that a part that is not there is not in it.
bool isReadToEnd(const Package& package) {
    return package.verdict == Verdict::whole || package.verdict == Verdict::incomplete;
}

bool isReadToEnd(const PartText& part) {
    return std::ranges::all_of(part.members, [](const Part* member) {
        return member->end.integrity == Integrity::whole && member->state != State::notRead;
    });
}

bool isLog(const PartText& part) {
    return std::ranges::any_of(part.members, [](const Part* member) { return member->log; });
}

std::optional<double> secondsBetween(const Package& before, const Package& after) {
    if (!before.time || !after.time || before.clockUnset || after.clockUnset || *before.time == *after.time) {
        return std::nullopt;
    }
    return std::chrono::duration<double>(*after.time - *before.time).count();
}

/// The missing part of this name that the package should have, or nullptr.
const Part* findMissing(const Package& package, std::string_view name) {
    const auto found = std::ranges::find_if(
        package.parts, [&](const Part& part) { return part.state == State::missing && part.name == name; });
    return found == package.parts.end() ? nullptr : &*found;
}

const PartText* find(const Parts& parts, std::string_view name) {
    const auto found = parts.find(name);
    return found == parts.end() ? nullptr : &found->second;
}

/// One comparison, part by part.
class Comparison {
public:
    Comparison(const Package& before, const Package& after, std::size_t lineLimit)
        : earlier(partsOf(before)), later(partsOf(after)) {
        result.maxLine = lineLimit;
        result.before = &before;
        result.after = &after;
        result.seconds = secondsBetween(before, after);
        earlierLogs.package = &before;
        laterLogs.package = &after;
    }

    Difference run();

private:
    void comparePart(const std::string& name);
    bool isComparable(const PartText* before, const PartText* after) const;
    void compareStates(const std::string& name, const PartText& before, const PartText& after);
    void addTexts(const std::string& name, const PartText& before, const PartText& after);

    Parts earlier;
    Parts later;
    Logs earlierLogs;
    Logs laterLogs;
    Difference result;
};

Difference Comparison::run() {
    std::set<std::string_view> names;
    for (const Parts* parts : {&earlier, &later}) {
        for (const auto& [name, part] : *parts) {
            names.insert(name);
        }
    }
    for (const std::string_view name : names) {
        comparePart(std::string(name));
    }
    result.logs = compareLogs(earlierLogs, laterLogs, result.maxLine);
    return std::move(result);
}

/// A part that only one package has is compared if the other package was read to its end. A part of both is
/// compared if both were read to their ends, or if they are the same so far.
bool Comparison::isComparable(const PartText* before, const PartText* after) const {
    if (before == nullptr || after == nullptr) {
        return isReadToEnd(before == nullptr ? *result.before : *result.after);
    }
    return (isReadToEnd(*before) && isReadToEnd(*after)) || isSameText(*before, *after);
}

void Comparison::comparePart(const std::string& name) {
    static const PartText none;
    const PartText* before = find(earlier, name);
    const PartText* after = find(later, name);
    if (!isComparable(before, after)) {
        result.notCompared.push_back(name);
        return;
    }
    compareStates(name, before != nullptr ? *before : none, after != nullptr ? *after : none);
    if (before != nullptr && after != nullptr) {
        addTexts(name, *before, *after);
    }
    for (const auto& [text, logs] : {std::pair(before, &earlierLogs), std::pair(after, &laterLogs)}) {
        if (text != nullptr) {
            std::ranges::copy_if(text->members, std::back_inserter(logs->parts), &Part::log);
        }
    }
    compareValues(before != nullptr ? before->values : none.values,
                  after != nullptr ? after->values : none.values, result.seconds, result.values);
}

/// Compares the members of one name in pairs. A package seldom has more than one.
void Comparison::compareStates(const std::string& name, const PartText& before, const PartText& after) {
    using What = PartChange::What;
    for (std::size_t place = 0; place < std::max(before.members.size(), after.members.size()); ++place) {
        const bool hadIt = place < before.members.size();
        const bool hasIt = place < after.members.size();
        PartChange change{.name = name};
        change.before = hadIt ? before.members[place] : findMissing(*result.before, name);
        change.after = hasIt ? after.members[place] : findMissing(*result.after, name);
        if (hadIt && hasIt && change.before->state == change.after->state) {
            continue;
        }
        change.what = !hadIt ? What::came : !hasIt ? What::went : What::state;
        result.parts.push_back(std::move(change));
    }
}

void Comparison::addTexts(const std::string& name, const PartText& before, const PartText& after) {
    if (isLog(before) || isLog(after)) {
        return;
    }
    TextChange text = compareTexts(before, after, result.maxLine);
    if (!text.empty()) {
        result.parts.push_back({.name = name,
                                .before = before.members.front(),
                                .after = after.members.front(),
                                .text = std::move(text)});
    }
}

/// Two packages that still have to be compared.
struct Waiting {
    const Package* before;
    const Package* after;
    std::string name;
};

/// Adds the pairs of nested packages with the same name, in the order of the later package.
void addNested(const Waiting& outer, std::deque<Waiting>& waiting) {
    std::multimap<std::string_view, const Package*> earlier;
    for (const Package& nested : outer.before->nested) {
        earlier.emplace(nested.source, &nested);
    }
    for (const Package& nested : outer.after->nested) {
        if (const auto match = earlier.extract(nested.source)) {
            const std::string name = outer.name.empty() ? nested.source : outer.name + ": " + nested.source;
            waiting.push_back({match.mapped(), &nested, name});
        }
    }
}

}  // namespace

bool Difference::empty() const {
    return parts.empty() && values.empty() && logs.empty() &&
           std::ranges::all_of(nested, [](const Difference& inner) {
               return inner.parts.empty() && inner.values.empty() && inner.logs.empty();
           });
}

bool Difference::hasSkipped() const {
    return !notCompared.empty() ||
           std::ranges::any_of(nested, [](const Difference& inner) { return !inner.notCompared.empty(); });
}

Difference compare(const Package& before, const Package& after, std::size_t maxLine) {
    Difference difference = Comparison(before, after, maxLine).run();
    std::deque<Waiting> waiting;
    addNested({&before, &after, {}}, waiting);
    for (; !waiting.empty(); waiting.pop_front()) {
        const Waiting& pair = waiting.front();
        Difference nested = Comparison(*pair.before, *pair.after, maxLine).run();
        if (!nested.empty() || nested.hasSkipped()) {
            nested.name = pair.name;
            difference.nested.push_back(std::move(nested));
        }
        addNested(pair, waiting);
    }
    return difference;
}

int exitStatusOf(const Difference& difference) {
    constexpr int same = 0;
    constexpr int different = 1;
    constexpr int trouble = 2;
    if (!isReadToEnd(*difference.before) || !isReadToEnd(*difference.after) || difference.hasSkipped()) {
        return trouble;
    }
    return difference.empty() ? same : different;
}

}  // namespace Report
