#include "Mapping.hpp"

namespace Report {

bool Mapping::add(const Address& original, const Address& replacement) {
    if (isOriginal(original) || isReplacement(replacement)) {
        return false;
    }
    forward.addresses.emplace(original, replacement);
    backward.addresses.emplace(replacement, original);
    return true;
}

bool Mapping::add(const std::string& original, const std::string& replacement) {
    if (isOriginal(original) || isReplacement(replacement)) {
        return false;
    }
    forward.names.emplace(original, replacement);
    forward.filter.add(original);
    backward.names.emplace(replacement, original);
    backward.filter.add(replacement);
    return true;
}

}  // namespace Report
