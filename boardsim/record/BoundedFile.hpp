#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Boardsim {

/// A text file that is appended to while the board runs. If it exceeds its limit, the older half is dropped.
/// Readers see only whole lines.
class BoundedFile {
public:
    /// Makes the line that replaces `dropped`.
    using DropSummary = std::string (*)(std::string_view dropped);

    /// Appends to an existing file. Throws std::system_error.
    BoundedFile(std::string filePath, std::uint64_t sizeLimit, DropSummary summaryOfDropped = nullptr);

    /// Appends `line`, which has no line end yet. Throws std::system_error.
    void addLine(std::string line) const;

private:
    std::uint64_t append(std::string_view bytes) const;
    void dropOlderHalf() const;

    std::string path;
    std::uint64_t limit;  // bytes
    DropSummary dropSummary;
};

}  // namespace Boardsim
