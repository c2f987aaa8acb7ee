#include "OutputFile.hpp"

#include <sys/stat.h>

#include "Console.hpp"
#include "SystemCall.hpp"
#include "TrustedOpen.hpp"

namespace Korvel {
namespace {

/// Truncates a regular file; a device needs no truncation.
bool emptyFile(int file) {
    struct stat status {};
    return ::fstat(file, &status) == 0 &&
           (!S_ISREG(status.st_mode) || Base::uninterrupted([&] { return ::ftruncate(file, 0); }) == 0);
}

}  // namespace

OutputFile::OutputFile(const std::string& path, Mode mode)
    : file(openTrusted(path, mode == Mode::append ? SharedFile::refuse : SharedFile::replace)) {
    if (file && mode == Mode::truncate && !emptyFile(file.get())) {
        file.reset();
    }
}

void OutputFile::write(std::string_view text) {
    while (!text.empty() && error == 0) {
        const ssize_t count =
            Base::uninterrupted([&] { return ::write(file.get(), text.data(), text.size()); });
        if (count <= 0) {
            error = count < 0 ? errno : EIO;
        } else {
            text.remove_prefix(static_cast<std::size_t>(count));
        }
    }
}

void OutputFile::setTimes(const FileState& state) const {
    const timespec times[] = {state.accessed, state.modified};
    ::futimens(file.get(), times);
}

bool OutputFile::close() {
    if (!file.close() && error == 0) {
        error = errno;
    }
    return error == 0;
}

bool writeDumpFile(const std::string& path, std::string_view text) {
    OutputFile file(path);
    if (!file.isOpen()) {
        return fail("Error while opening ", path);
    }
    file.write(text);
    return file.close() || fail("Error while writing ", path, ": ", std::strerror(file.writeError()));
}

}  // namespace Korvel
