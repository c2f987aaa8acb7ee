#include "DescriptorSink.hpp"

#include <cstddef>

#include <unistd.h>

#include "SystemCall.hpp"

namespace Report {

void DescriptorSink::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count =
            Base::checked(Base::uninterrupted([&] { return ::write(fd, bytes.data(), bytes.size()); }), path);
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

}  // namespace Report
