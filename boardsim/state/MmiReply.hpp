#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Boardsim {

/// The datagram that ends a reply of a dispatcher's MMI service.
constexpr std::string_view mmiEndOfMessage = "<MMI_END_OF_MSG>";

/// What the MMI service of the dispatcher `instance` ("iwf", "sfn") says to `command`; an error line
/// for a command that it does not know.
std::string mmiReplyText(std::string_view instance, const std::string& command);

/// `text` cut into datagrams of at most 512 bytes, at line ends.
std::vector<std::string> mmiDatagrams(const std::string& text);

}  // namespace Boardsim
