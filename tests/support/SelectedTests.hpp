#pragma once

#include <string>
#include <vector>

/// The full names of the tests that this program runs, in GoogleTest's order. The flags for filters, shards
/// and shuffling apply. Call it before any test runs.
std::vector<std::string> selectedTests();
