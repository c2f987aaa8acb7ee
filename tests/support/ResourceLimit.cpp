#include "ResourceLimit.hpp"

#include <stdexcept>

ResourceLimit::ResourceLimit(int limitedResource, rlim_t value) : resource(limitedResource) {
    const auto which = static_cast<__rlimit_resource>(resource);
    if (::getrlimit(which, &before) != 0) {
        throw std::runtime_error("cannot read a resource limit");
    }
    const rlimit limit{.rlim_cur = value, .rlim_max = before.rlim_max};
    if (::setrlimit(which, &limit) != 0) {
        throw std::runtime_error("cannot set a resource limit");
    }
}

ResourceLimit::~ResourceLimit() {
    ::setrlimit(static_cast<__rlimit_resource>(resource), &before);
}
