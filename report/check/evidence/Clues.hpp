#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "AgeSigns.hpp"
#include "DiskSigns.hpp"
#include "Package.hpp"
#include "PartTable.hpp"
#include "ProcessListing.hpp"
#include "ProcessSigns.hpp"
#include "Replies.hpp"
#include "RunReport.hpp"

namespace Report {

/// What a package and its sidecar tell about the causes of its states. Refers to the package. Needs the
/// states that the parts have by their own contents and by their age.
class Clues {
public:
    explicit Clues(const Package& judged);

    const Package& package;
    const std::optional<RunReport> run;  ///< of a sidecar that is used
    const DiskSigns disk;
    const Replies replies;
    const ProcessSigns processSigns;
    const AgeSigns ages;

    /// What the process listing of the same run tells. Unknown if the listing is of another run.
    Presence presenceOf(std::string_view process) const;
    Evidence listingFor(std::string_view process) const { return listing.evidenceFor(process); }
    /// Whether the process had ended. Known only if the listing has another process under its name here: this
    /// board may have other names.
    bool hasEnded(std::string_view process) const;

    /// Whether everything is known that korvel complained of: then it had no other trouble.
    bool knowAllComplaints() const { return run && run->isComplete(); }

    /// Whether the part was written before the run began, by the sidecar and a clock that nobody set back.
    /// Linux logs can keep the times of their sources, so only all of them together are old.
    bool precedesRun(const Part& part, const PartPlace& place) const;

    /// Whether the part was written after the run began, by the same evidence.
    bool followsBeginOfRun(const Part& part) const { return began && part.time && *part.time > *began; }

    /// Whether the collection was cut by its limit of 48 MiB in this part, or before it.
    bool isBeyondLimit(const Part& part, const PartPlace& place) const;

    /// Whether a later reply of the same dispatcher has contents.
    bool answeredLater(const PartPlace& place) const;

    /// Whether the run reported a time-out for each empty reply, and nothing else about replies.
    bool timeoutsMatchEmptyReplies() const;

    /// A complaint of the run that a reply did not end, if there are so many that no reply in the package
    /// ended. Null otherwise.
    const Complaint* noReplyEnded() const;

private:
    const ProcessListing listing;
    bool listingIsCurrent;
    std::optional<Time> began;  // the run, by a clock that nobody set back
    std::optional<int> fullAt;  // position of the part that the limit cut, in the order of collection
};

/// The newest time of the parts of a collector that were read from the package.
std::optional<Time> newestOf(const Package& package, Collector collector);

}  // namespace Report
