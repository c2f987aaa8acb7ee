#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Boardsim {

/// A text file that lines are added to for as long as the board runs, and that never grows beyond its limit:
/// then the older half goes. Can be read meanwhile; a reader sees whole lines.
class BoundedFile {
public:
    /// The line that takes the place of `dropped`, or nothing.
    using Epitaph = std::string (*)(std::string_view dropped);

    /// Goes on with the file where there is one. Throws std::system_error.
    BoundedFile(std::string filePath, std::uint64_t sizeLimit, Epitaph lineForDropped = nullptr);

    /// Adds one line, to be given without its end. Throws std::system_error.
    void addLine(std::string line) const;

private:
    std::uint64_t append(std::string_view bytes) const;
    void dropOlderHalf() const;

    std::string path;
    std::uint64_t limit;  // bytes
    Epitaph epitaph;
};

}  // namespace Boardsim
