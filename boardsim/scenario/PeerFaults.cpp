#include "PeerFaults.hpp"

#include <optional>

#include "PeerCatalog.hpp"
#include "UsageError.hpp"
#include "WholeNumber.hpp"

namespace Boardsim {
namespace {

/// The names with commas in between, on a line of their own below a message.
std::string listed(std::string_view title, const std::vector<std::string>& names) {
    std::string line = "\n" + std::string(title) + ": ";
    for (const std::string& name : names) {
        line += (&name == &names.front() ? "" : ", ") + name;
    }
    return line;
}

std::string listedPeers(std::string_view title, bool (*included)(const PeerEntry& peer)) {
    std::vector<std::string> names;
    for (const PeerEntry& peer : peerCatalog()) {
        if (included(peer)) {
            names.emplace_back(peer.name);
        }
    }
    return listed(title, names);
}

std::string listedPeersWithFaults() {
    return listedPeers("peers with faults", [](const PeerEntry& peer) { return !peer.faults.empty(); });
}

/// The faults that `peer` has. If it has none, the peers with faults.
std::string listedFaults(const PeerEntry& peer) {
    std::vector<std::string> forms;
    for (const FaultGroup& group : peer.faults) {
        for (const FaultKind& kind : group.kinds()) {
            forms.push_back(std::string(group.prefix) + kind.form());
        }
    }
    return forms.empty() ? listedPeersWithFaults() : listed("valid faults", forms);
}

FaultKind findKind(const PeerEntry& peer, std::string_view name) {
    for (const FaultGroup& group : peer.faults) {
        if (const auto kind = group.findKind(name)) {
            return *kind;
        }
    }
    throw UsageError(std::string(peer.name) + " has no fault '" + std::string(name) + "'" +
                     listedFaults(peer));
}

/// `name` includes the prefix.
int parseFaultNumber(const FaultKind& kind, const std::string& name, std::string_view text) {
    const std::optional<int> number = wholeNumber<int>(text);
    if (!number || *number < kind.least || *number > kind.most) {
        throw UsageError("fault '" + name + "' takes a number from " + std::to_string(kind.least) + " to " +
                         std::to_string(kind.most) + ": " + name + ":N");
    }
    return *number;
}

}  // namespace

std::string parsePeerName(const std::string& text) {
    if (findPeer(text) == nullptr) {
        throw UsageError("unknown peer: '" + text + "'" +
                         listedPeers("valid peers", [](const PeerEntry& /*peer*/) { return true; }));
    }
    return text;
}

PeerFault parsePeerFault(const std::string& text) {
    const std::size_t equals = text.find('=');
    const std::string peer = text.substr(0, equals);
    const PeerEntry* entry = findPeer(peer);
    if (equals == std::string::npos) {
        throw UsageError("not PEER=FAULT: '" + text + "'" +
                         (entry == nullptr ? listedPeersWithFaults() : listedFaults(*entry)));
    }
    if (entry == nullptr) {
        throw UsageError("unknown peer: '" + peer + "'" + listedPeersWithFaults());
    }
    const std::size_t colon = text.find(':', equals);
    const bool hasNumber = colon != std::string::npos;
    const std::string name = text.substr(equals + 1, hasNumber ? colon - equals - 1 : std::string::npos);
    const FaultKind kind = findKind(*entry, name);
    if (hasNumber && !kind.takesNumber()) {
        throw UsageError("fault '" + name + "' takes no number");
    }
    const std::string_view number = hasNumber ? std::string_view(text).substr(colon + 1) : "";
    return {peer,
            {name, kind.takesNumber() ? parseFaultNumber(kind, name, number) : 0, text.substr(equals + 1)}};
}

std::vector<std::string> peerFaultTexts(const std::vector<PeerFault>& faults) {
    std::vector<std::string> texts;
    texts.reserve(faults.size());
    for (const auto& [peer, fault] : faults) {
        texts.push_back(peer + "=" + fault.text);
    }
    return texts;
}

}  // namespace Boardsim
