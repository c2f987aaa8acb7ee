#include "ManagedInterfaces.hpp"

namespace Boardsim {

std::uint32_t ManagedInterfaces::add(std::string_view field) {
    const std::size_t length = field.find('\0');
    if (length == 0 || length == std::string_view::npos) {
        return badName;
    }
    return names.emplace(field.substr(0, length)).second ? added : managedAlready;
}

std::string ManagedInterfaces::text() const {
    std::string text = names.empty() ? "" : "managed interfaces:\n";
    for (const std::string& name : names) {
        text += "  " + name + "\n";
    }
    return text;
}

}  // namespace Boardsim
