#include "Gate.hpp"

#include <chrono>
#include <filesystem>
#include <thread>

#include "TestFiles.hpp"

namespace {

constexpr const char* reached = "/tmp/gate-reached";
constexpr const char* opened = "/tmp/gate-open";

}  // namespace

std::string Gate::script() {
    return std::string("touch ") + reached + "\nwhile [ ! -e " + opened + " ]; do sleep 0.01; done\n";
}

void Gate::await() {
    while (!std::filesystem::exists(reached)) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

void Gate::open() {
    writeFile(opened, "");
}
