#include "SmallFile.hpp"

#include <array>
#include <memory>
#include <system_error>

#include "PackageSource.hpp"

namespace Report {

std::string readSmallFile(const std::string& path, std::size_t most) {
    const PackageSource file(path);
    const std::unique_ptr<ByteSource> stream = file.open();
    std::array<char, std::size_t{16} << 10> buffer{};
    std::string text;
    for (std::size_t count = stream->read(buffer); count > 0; count = stream->read(buffer)) {
        text.append(buffer.data(), count);
        if (text.size() > most) {
            throw std::system_error(std::make_error_code(std::errc::file_too_large), path);
        }
    }
    return text;
}

}  // namespace Report
