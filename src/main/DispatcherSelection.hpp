#pragma once

#include <string>

class Config;

namespace Korvel {

/// Adds the instances that the value of "-d" names ("iwf", "sfn", "all") to the selection; any other value
/// leaves it as it is.
void selectDispatcherFromOption(const std::string& type);

/// Selects the instances that run on this board, where no "-d" selected any.
void selectDispatcherFromPlatform(const Config& platform);

}  // namespace Korvel
