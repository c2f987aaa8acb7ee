#include "RemovedWhenRead.hpp"

#include <filesystem>

#include <sys/inotify.h>
#include <unistd.h>

#include "UniqueFd.hpp"

namespace {

void removeAfter(const std::string& path, int times, const Korvel::UniqueFd& watch) {
    inotify_event event{};
    const int events = 2 * times;  // opened and closed in turn: the kernel joins events that are alike
    for (int count = 0; count < events; ++count) {
        if (::read(watch.get(), &event, sizeof event) != sizeof event) {
            return;
        }
    }
    std::filesystem::remove(path);
}

}  // namespace

RemovedWhenRead::RemovedWhenRead(const std::string& path, int times) {
    Korvel::UniqueFd watch(::inotify_init1(IN_CLOEXEC));
    ::inotify_add_watch(watch.get(), path.c_str(), IN_OPEN | IN_CLOSE_NOWRITE);
    remover = std::thread([path, times, watch = std::move(watch)] { removeAfter(path, times, watch); });
}

RemovedWhenRead::~RemovedWhenRead() {
    remover.join();
}
