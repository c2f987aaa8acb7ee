#include "HarmlessSignal.hpp"

#include <csignal>

namespace Korvel {
namespace {

void doNothing(int /*signal*/) {
}

}  // namespace

void makeHarmless(int signal) {
    std::signal(signal, doNothing);
}

}  // namespace Korvel
