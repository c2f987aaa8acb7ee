#pragma once

#include <string>

class Config;

namespace Korvel {

/// Adds the instances of the value of "-d" ("iwf", "sfn", "all") to the selection. Ignores any other value.
void selectDispatcherFromOption(const std::string& type);

/// If no "-d" selected an instance, selects the instances that run on this board.
void selectDispatcherFromPlatform(const Config& platform);

}  // namespace Korvel
