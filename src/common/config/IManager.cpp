#include "IManager.hpp"

namespace Korvel {

IManager::IManager(const std::string& managerName) : name(managerName) {
}

IManager::~IManager() = default;

bool IManager::resolveRequest(int /*argc*/, char** /*argv*/) {
    return true;
}

bool IManager::run() {
    return true;
}

std::string IManager::getName() const {
    return name;
}

}  // namespace Korvel
