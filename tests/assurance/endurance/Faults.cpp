#include "Faults.hpp"

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include "UniqueFd.hpp"

namespace fs = std::filesystem;

namespace {

constexpr const char* filler = "/ffs/filler";
constexpr unsigned longest = 3;  // reads

}  // namespace

Faults::Faults(unsigned readsPerFault) : period(readsPerFault) {
}

void Faults::change(const ArchivedLog& dispatcher, const ArchivedLog& syslib, unsigned next) {
    if (readsLeft > 0 && --readsLeft > 0) {
        return;
    }
    clear();
    if (random(period) == 0) {
        readsLeft = 1 + random(longest);
        begin(dispatcher, syslib, next);
    }
}

void Faults::begin(const ArchivedLog& dispatcher, const ArchivedLog& syslib, unsigned next) {
    enum Kind { noRoomForText, noRoomForCopy, noRoomForCompression, dispatcherCopy, syslibCopy };
    std::discrete_distribution<int> kinds({1, 20, 20, 20, 20});
    const std::uint64_t copy = syslib.runtimeSize() + next;
    constexpr std::uint64_t lessThanCompressed = 8192;
    switch (static_cast<Kind>(kinds(generator))) {
        case noRoomForText:
            leaveRoom(random(next));
            break;
        case noRoomForCopy:
            leaveRoom(next + random(static_cast<unsigned>(copy)));
            break;
        case noRoomForCompression:
            leaveRoom(next + copy + lessThanCompressed);
            break;
        case dispatcherCopy:
            blockCopy(dispatcher);
            break;
        case syslibCopy:
            blockCopy(syslib);
            break;
    }
}

void Faults::clear() {
    for (const std::string& path : obstacles) {
        fs::remove(path);
    }
    obstacles.clear();
    readsLeft = 0;
}

/// cp does not write through a link that leads nowhere.
void Faults::blockCopy(const ArchivedLog& log) {
    for (const std::string& path : {log.files().startupPath, log.files().middlePath}) {
        if (!fs::exists(fs::symlink_status(path))) {  // else a copy that could not be compressed
            fs::create_symlink("/tmp/nowhere", path);
            obstacles.push_back(path);
        }
    }
}

void Faults::leaveRoom(std::uint64_t bytes) {
    const Base::UniqueFd file(::open(filler, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    struct statvfs state {};
    if (::fstatvfs(file.get(), &state) != 0) {
        throw std::runtime_error("no disk for the archive");
    }
    obstacles.emplace_back(filler);
    const std::uint64_t room = state.f_bavail * state.f_frsize;
    if (room > bytes) {
        ::posix_fallocate(file.get(), 0, static_cast<off_t>(room - bytes));
    }
}

unsigned Faults::random(unsigned limit) {
    return std::uniform_int_distribution<unsigned>(0, limit - 1)(generator);
}
