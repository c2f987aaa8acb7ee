#pragma once

#include <map>
#include <optional>
#include <vector>

#include "Package.hpp"

namespace Report {

/// Shows that a part is older than it would be if the latest run had written it.
struct AgeSign {
    const Part* other;  ///< a part of the latest run
    bool isClear;       ///< a busy board alone hardly explains the difference
};

/// Signs in the times of the parts of fuse, mmi and ti that an earlier run wrote them. One run writes its
/// files in a fixed order, and one soon after the other. So a part is old if the run wrote an earlier one
/// after it, or the next one much later.
class AgeSigns {
public:
    /// Needs the states of the parts. The package must outlive this object.
    explicit AgeSigns(const Package& package);

    std::optional<AgeSign> signOf(const Part& part) const;

private:
    struct Step;

    static std::vector<Step> stepsOf(const Package& package);
    void findNewerPredecessors(const std::vector<Step>& steps);
    void findLateSuccessors(const std::vector<Step>& steps);

    std::map<const Part*, AgeSign> signs;
};

}  // namespace Report
