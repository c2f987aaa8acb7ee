#pragma once

#include <sys/resource.h>

/// Sets a limit (RLIMIT_...) of this process from construction to destruction.
class ResourceLimit {
public:
    ResourceLimit(int limitedResource, rlim_t value);
    ResourceLimit(const ResourceLimit&) = delete;
    ResourceLimit& operator=(const ResourceLimit&) = delete;
    ResourceLimit(ResourceLimit&&) = delete;
    ResourceLimit& operator=(ResourceLimit&&) = delete;
    ~ResourceLimit();

private:
    const int resource;
    rlimit before{};
};
