#pragma once

#include <cstdint>
#include <string>

#include "Package.hpp"

namespace Report::Test {

/// A package of a healthy board with two dispatchers, without texts, and with a sidecar.
Package wholePackage();

/// The same package, in which dispatcher sfn did not answer, a dump was cut, and another one is missing.
Package troubledPackage();

/// A part of a package, by its name. Throws std::logic_error if there is none.
Part& partOf(Package& package, const std::string& name);

/// Adds a value to a package.
void addValue(Package& package, const std::string& part, const std::string& title, const std::string& name,
              std::int64_t number);

/// Makes a part a log with this text.
void setLog(Package& package, const std::string& part, const std::string& text);

}  // namespace Report::Test
