#include "RemovedWhenRead.hpp"

#include <filesystem>

#include <sys/inotify.h>
#include <unistd.h>

#include "UniqueFd.hpp"

namespace {

void removeAfter(const std::string& path, const Base::UniqueFd& watch) {
    inotify_event event{};
    for (int count = 0; count < 2; ++count) {  // opened and closed
        if (::read(watch.get(), &event, sizeof event) != sizeof event) {
            return;
        }
    }
    std::filesystem::remove(path);
}

}  // namespace

RemovedWhenRead::RemovedWhenRead(const std::string& path, const std::string& laterPath) {
    Base::UniqueFd watch(::inotify_init1(IN_CLOEXEC));
    ::inotify_add_watch(watch.get(), path.c_str(), IN_OPEN | IN_CLOSE_NOWRITE);
    remover = std::thread([laterPath, watch = std::move(watch)] { removeAfter(laterPath, watch); });
}

RemovedWhenRead::~RemovedWhenRead() {
    remover.join();
}
