#include "Mapping.hpp"

#include <utility>

#include <sys/mman.h>

namespace HostBoard {

Mapping::Mapping(void* address, std::size_t length) : mapped(static_cast<std::byte*>(address), length) {
}

Mapping::Mapping(Mapping&& other) noexcept : mapped(std::exchange(other.mapped, {})) {
}

Mapping& Mapping::operator=(Mapping&& other) noexcept {
    std::swap(mapped, other.mapped);
    return *this;
}

Mapping::~Mapping() {
    if (!mapped.empty()) {
        ::munmap(mapped.data(), mapped.size());
    }
}

}  // namespace HostBoard
