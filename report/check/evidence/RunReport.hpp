#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "PartTable.hpp"
#include "Sidecar.hpp"

namespace Report {

/// The messages of korvel about a collection. korvel(1), section DIAGNOSTICS, explains them.
enum class ComplaintKind : std::uint8_t {
    writeFailed,
    openFailed,
    readFailed,
    outputEmpty,
    cutAtLimit,
    limitReached,
    waited,
    replyTimedOut,
    replyFailed,
    replyUnended,
    sendFailed,
    socketFailed,
    signalFailed,
    commandFailed,
    folderFailed,
    gaveUp,
    errorsMissing,  ///< not all of the standard error was kept
    other,          ///< a message that says nothing about a part
    unknown,        ///< none of korvel
};

/// One line of the standard error of a run.
struct Complaint {
    ComplaintKind kind = ComplaintKind::unknown;
    std::string subject;  ///< a path, a command or a process
    std::string detail;   ///< the reason, the exit code or the size
    std::string line;
    std::string part;  ///< the name of the part that the subject is or becomes; empty if it is none
};

/// What a sidecar tells about the run that made a package.
class RunReport {
public:
    explicit RunReport(const Sidecar& sidecar);

    const std::vector<Complaint>& complaints() const { return lines; }
    /// The first complaint of this kind, or null. With a part, only one about this part.
    const Complaint* find(ComplaintKind kind) const;
    const Complaint* find(ComplaintKind kind, std::string_view part) const;
    std::size_t count(ComplaintKind kind) const;
    /// The first complaint that there was no room to write a file, or null.
    const Complaint* findNoRoom() const;
    /// Whether this complaint is that there was no room.
    static bool isNoRoom(const Complaint& complaint);

    /// Whether the sidecar has all that the run complained of.
    bool isComplete() const { return find(ComplaintKind::errorsMissing) == nullptr; }

    /// Whether the run was asked for this part. Unknown if the command is unknown.
    std::optional<bool> askedFor(const PartPlace& place) const;
    /// Whether the command also printed, which removes the dumps.
    bool printed() const { return alsoPrinted; }
    /// The command as it stands in the sidecar.
    const std::string& command() const { return commandLine; }

private:
    void parseCommand();
    void parseComplaints(std::string_view text);

    std::string commandLine;
    std::optional<std::set<std::string, std::less<>>> keywords;  // narrow ones
    std::set<std::string, std::less<>> dispatchers;              // of -d; empty: those of the deployment
    bool alsoPrinted = false;
    std::vector<Complaint> lines;
};

/// The dispatchers of a board, from the `deployment` of a sidecar: the contents of the three files. Empty if
/// it tells nothing.
std::vector<Dispatcher> dispatchersOf(std::string_view deployment);

}  // namespace Report
