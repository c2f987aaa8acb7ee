#include "UtcText.hpp"

#include <array>

namespace Boardsim {

std::string utcText(std::time_t moment) {
    std::tm parts{};
    ::gmtime_r(&moment, &parts);
    std::array<char, 64> text{};
    std::strftime(text.data(), text.size(), "%FT%T", &parts);
    return text.data();
}

}  // namespace Boardsim
