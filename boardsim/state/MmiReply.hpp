#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "DispatcherState.hpp"

namespace Boardsim {

/// The last datagram of each MMI reply.
constexpr std::string_view mmiEndOfMessage = "<MMI_END_OF_MSG>";

/// The reply of the MMI service of the dispatcher `instance` ("iwf", "sfn"); an error line if the command is
/// unknown. Without a state, the numbers are invented.
std::string mmiReplyText(std::string_view instance, const std::string& command,
                         const DispatcherState* state = nullptr);

/// Splits `text` at line ends into datagrams of at most 512 bytes.
std::vector<std::string> mmiDatagrams(const std::string& text);

}  // namespace Boardsim
