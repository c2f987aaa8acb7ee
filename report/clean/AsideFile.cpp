#include "AsideFile.hpp"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "SystemCall.hpp"

namespace Report {
namespace {

/// The path behind symbolic links; the path itself if there is no such file.
std::string resolved(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    return real ? std::string(real.get()) : path;
}

/// The permissions of a new file.
mode_t usualMode() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

}  // namespace

AsideFile::AsideFile(const std::string& path, std::optional<mode_t> mode) : target(resolved(path)) {
    struct stat existing {};
    existed = ::stat(target.c_str(), &existing) == 0;
    if (!existed) {
        openAside(mode.value_or(usualMode()));
    } else if (S_ISREG(existing.st_mode)) {
        openAside(mode.value_or(existing.st_mode & 0777));
    } else {
        fd.reset(Base::checked(::open(target.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY), target));
    }
}

AsideFile::~AsideFile() {
    if (!aside.empty()) {
        ::unlink(aside.c_str());
    }
}

void AsideFile::openAside(mode_t mode) {
    std::string name = target + ".XXXXXX";
    fd.reset(Base::checked(::mkostemp(name.data(), O_CLOEXEC), target));
    aside = name;
    Base::checked(::fchmod(fd.get(), mode), target);
}

void AsideFile::takeBack() noexcept {
    if (!existed && aside.empty()) {
        ::unlink(target.c_str());
    }
}

void AsideFile::keep() {
    if (!aside.empty()) {
        Base::checked(::fsync(fd.get()), target);
    }
    if (!fd.close()) {
        throw std::system_error(errno, std::generic_category(), target);
    }
    if (!aside.empty()) {
        Base::checked(std::rename(aside.c_str(), target.c_str()), target);
        aside.clear();
    }
}

}  // namespace Report
