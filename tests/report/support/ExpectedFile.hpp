#pragma once

#include <fstream>
#include <iterator>
#include <string>

namespace Report::Test {

/// The contents of a file with expected output, in tests/report/expected.
inline std::string expectedFile(const std::string& name) {
    std::ifstream file(std::string(EXPECTED_FILES) + "/" + name);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace Report::Test
