#pragma once

#include <string>
#include <vector>

/// The full names of the tests that this program is to run, in the order that GoogleTest would run them in:
/// its flags for filters, shards and shuffling count. To be called before any test runs.
std::vector<std::string> selectedTests();
