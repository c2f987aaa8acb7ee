#pragma once

#include <stdexcept>

#include "Mapping.hpp"
#include "Odometer.hpp"
#include "Originals.hpp"

namespace Report {

/// No replacement of the same length is left. what() names the original.
class NoReplacement : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Gives each original of a package a replacement. Those that `mapping` has remain. Throws NoReplacement.
void assignReplacements(const Originals& originals, Mapping& mapping, Random& random);

}  // namespace Report
