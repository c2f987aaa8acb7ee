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

void Faults::change(const ArchivedLog& dispatcher, const ArchivedLog& syslib, std::uint64_t next) {
    if (readsLeft > 0) {
        --readsLeft;
        if (readsLeft > 0) {
            return;
        }
        clear();
    }
    if (random(period) != 0) {
        return;
    }
    readsLeft = 1 + random(longest);
    const std::uint64_t text = syslib.runtimeSize() + next;
    constexpr std::uint64_t lessThanCompressed = 8192;
    switch (random(16)) {
        case 0:
            leaveRoom(random(static_cast<unsigned>(next)));
            break;  // not even for the text
        case 1:
        case 2:
        case 3:
        case 4:
            leaveRoom(next + random(static_cast<unsigned>(text)));
            break;  // not for a copy
        case 5:
        case 6:
        case 7:
            leaveRoom(next + text + lessThanCompressed);
            break;
        case 8:
        case 9:
        case 10:
            blockCopy(dispatcher);
            break;
        default:
            blockCopy(syslib);
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
