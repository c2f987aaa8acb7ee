#include "HarmlessSignal.hpp"

#include <csignal>

namespace Korvel {
namespace {

void letPass(int /*signal*/) {
}

}  // namespace

void makeHarmless(int signal) {
    std::signal(signal, letPass);
}

}  // namespace Korvel
