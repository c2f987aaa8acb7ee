#include "TimeText.hpp"

#include <array>
#include <chrono>
#include <cstdio>

namespace Report {

std::string microsecondsText(Time time) {
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(time - day);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02d:%02d:%02d.%06d",
                  static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                  static_cast<unsigned>(date.day()), static_cast<int>(clock.hours().count()),
                  static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()),
                  static_cast<int>(clock.subseconds().count()));
    return text.data();
}

std::string secondsText(Time time) {
    const std::string text = microsecondsText(time);
    return text.substr(0, text.rfind('.')) + " UTC";
}

}  // namespace Report
