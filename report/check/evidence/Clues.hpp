#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

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

    /// What the process listing of the same run tells. Unknown if the listing is of another run.
    Presence presenceOf(std::string_view process) const;
    Evidence listingFor(std::string_view process) const { return listing.evidenceFor(process); }

    /// Whether everything is known that korvel complained of: then it had no other trouble.
    bool knowAllComplaints() const { return run && run->isComplete(); }

    /// Whether the collection was cut by its limit of 48 MiB in this part, or before it.
    bool isBeyondLimit(const Part& part, const PartPlace& place) const;

    /// Whether a later reply of the same dispatcher has contents.
    bool answeredLater(const PartPlace& place) const;

    /// Whether the run reported a time-out for each empty reply, and nothing else about replies.
    bool timeoutsMatchEmptyReplies() const;

private:
    const ProcessListing listing;
    bool listingIsCurrent;
    std::optional<int> fullAt;  // position of the part that the limit cut, in the order of collection
};

/// The newest time of the parts of a collector that were read from the package.
std::optional<Time> newestOf(const Package& package, Collector collector);

}  // namespace Report
