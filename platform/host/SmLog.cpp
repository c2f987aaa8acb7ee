#include "SmLog.hpp"

#include <climits>
#include <string>
#include <string_view>

#include "SmLogRegistry.hpp"

namespace {

bool isFileName(std::string_view name) {
    return !name.empty() && name.size() <= NAME_MAX && name.find('/') == std::string_view::npos;
}

}  // namespace

SmLog* SmLog::getClientInstance(const char* name, AppID) {
    if (name == nullptr || !isFileName(name)) {
        return nullptr;
    }
    HostBoard::SmLogRegistry* const registry = HostBoard::SmLogRegistry::instance();
    return registry == nullptr ? nullptr : registry->client(name);
}
