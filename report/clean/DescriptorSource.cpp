#include "DescriptorSource.hpp"

#include <fcntl.h>
#include <unistd.h>

#include "SystemCall.hpp"

namespace Report {

namespace {

int openOrDuplicate(const std::string& path) {
    return path == "-"
               ? ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
               : Base::uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY); });
}

}  // namespace

DescriptorSource::DescriptorSource(const std::string& path)
    : name(path), file(Base::checked(openOrDuplicate(path), path)) {
}

const std::string& DescriptorSource::peek(std::size_t size) {
    while (start.size() < size) {
        std::string more(size - start.size(), '\0');
        const ssize_t count = Base::checked(
            Base::uninterrupted([&] { return ::read(file.get(), more.data(), more.size()); }), name);
        if (count == 0) {
            break;
        }
        start.append(more, 0, static_cast<std::size_t>(count));
    }
    return start;
}

std::size_t DescriptorSource::read(std::span<char> buffer) {
    if (!start.empty()) {
        const std::size_t count = start.copy(buffer.data(), buffer.size());
        start.erase(0, count);
        return count;
    }
    return static_cast<std::size_t>(Base::checked(
        Base::uninterrupted([&] { return ::read(file.get(), buffer.data(), buffer.size()); }), name));
}

}  // namespace Report
