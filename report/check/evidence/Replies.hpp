#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Package.hpp"
#include "PartTable.hpp"

namespace Report {

/// What is wrong with the text of a dispatcher's reply.
enum class ReplyFault : std::uint8_t {
    none,
    unended,  ///< it does not end with a line end, unlike the other dispatcher's reply
    shorter,  ///< it lacks the last lines that the other dispatcher's reply has
    late,     ///< it is, or begins with, the reply to an earlier command
};

/// Compares the replies of a dispatcher (the parts of mmi) with those of the other dispatcher, whose texts
/// differ only in numbers and in the dispatcher's name. Without such a reply, an answer after a missing one
/// counts as late. Considers the parts whose state is present or empty, and needs the texts of small parts.
class Replies {
public:
    explicit Replies(const Package& package);

    ReplyFault faultOf(const PartPlace& place) const;

private:
    struct Reply {
        PartPlace place;
        std::vector<std::string> lines;  // without numbers; none for a reply that is empty or not text
        std::set<std::string> distinct;  // the same lines
        bool endsLine = false;
        bool empty = false;
    };

    const Reply* find(Dispatcher dispatcher, const PartPlace& place) const;
    const Reply* referenceFor(const PartPlace& place) const;
    bool belongsElsewhere(const Reply& reply, const Reply& reference) const;
    bool followsSilence(Dispatcher dispatcher, const PartPlace& place) const;

    std::vector<Reply> replies;
};

}  // namespace Report
