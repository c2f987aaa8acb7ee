#pragma once

#include <cstddef>

#include "Budget.hpp"

namespace Report {

/// Counts against a budget what a loader keeps of a package. A text that does not fit is left out, and the
/// reading goes on: a part of the memory is reserved for the names of what follows.
class Memory {
public:
    explicit Memory(Budget& budgetOfPackage) : budget(budgetOfPackage) {}

    /// Counts bytes of a text or of values. Returns false, and counts nothing, if they do not fit.
    [[nodiscard]] bool keepContent(std::size_t bytes);

    /// Counts bytes of names. Returns false if they do not fit: that ends the reading.
    [[nodiscard]] bool keepName(std::size_t bytes);

    void releaseContent(std::size_t bytes);

private:
    Budget& budget;
    std::size_t kept = 0;
};

}  // namespace Report
