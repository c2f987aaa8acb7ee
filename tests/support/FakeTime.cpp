#include "FakeTime.hpp"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

/// The library's folder is named after the processor.
std::string fakeTimeLibrary() {
    for (const auto& folder : std::filesystem::directory_iterator("/usr/lib")) {
        const auto library = folder.path() / "faketime" / "libfaketime.so.1";
        if (std::filesystem::exists(library)) {
            return library;
        }
    }
    throw std::runtime_error("libfaketime is not installed");
}

/// Keeps a library that this process was started with.
std::string preloaded() {
    const char* const others = std::getenv("LD_PRELOAD");
    return fakeTimeLibrary() + (others == nullptr ? "" : std::string(":") + others);
}

Surroundings withFakeTime(const std::string& time, Surroundings surroundings) {
    surroundings.environment.insert(
        {{"LD_PRELOAD", preloaded()}, {"FAKETIME", time}, {"ASAN_OPTIONS", "verify_asan_link_order=0"}});
    return surroundings;
}

}  // namespace

Surroundings atSpeed(int factor, Surroundings surroundings) {
    return withFakeTime("+0 x" + std::to_string(factor), std::move(surroundings));
}

Surroundings withWallClockAtSpeed(int factor, Surroundings surroundings) {
    surroundings.environment.insert({"FAKETIME_DONT_FAKE_MONOTONIC", "1"});
    return atSpeed(factor, std::move(surroundings));
}

Surroundings atMoment(const std::string& moment, Surroundings surroundings) {
    surroundings.environment.insert({"FAKETIME_DONT_FAKE_MONOTONIC", "1"});
    return withFakeTime(moment, std::move(surroundings));
}
