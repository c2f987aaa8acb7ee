#include "BoundedFile.hpp"

#include <fcntl.h>
#include <unistd.h>

#include "SystemCall.hpp"
#include "TextFile.hpp"
#include "UniqueFd.hpp"

namespace Boardsim {

BoundedFile::BoundedFile(std::string filePath, std::uint64_t sizeLimit, DropSummary summaryOfDropped)
    : path(std::move(filePath)), limit(sizeLimit), dropSummary(summaryOfDropped) {
    append("");
}

void BoundedFile::addLine(std::string line) const {
    line += '\n';  // a single write, so that readers see whole lines
    if (append(line) > limit) {
        dropOlderHalf();
    }
}

/// Returns the new size. Opens the file each time, because someone may have replaced it.
std::uint64_t BoundedFile::append(std::string_view bytes) const {
    constexpr mode_t mode = 0644;
    const Base::UniqueFd file(Base::checked(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, mode), "cannot write " + path));
    Base::checked(::write(file.get(), bytes.data(), bytes.size()), "cannot write " + path);
    return static_cast<std::uint64_t>(Base::checked(::lseek(file.get(), 0, SEEK_END), path));
}

void BoundedFile::dropOlderHalf() const {
    const std::string text = readTextFile(path);
    const std::size_t cut = text.find('\n', text.size() / 2) + 1;
    const std::string_view dropped = std::string_view(text).substr(0, cut);
    replaceTextFile(path, (dropSummary == nullptr ? "" : dropSummary(dropped) + "\n") + text.substr(cut));
}

}  // namespace Boardsim
