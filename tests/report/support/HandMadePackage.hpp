#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "Package.hpp"

namespace Report::Test {

/// A package that a test makes part by part, without an archive and without a judge.
class HandMadePackage : public Package {
public:
    explicit HandMadePackage(const std::string& path) {
        source = path;
        verdict = Verdict::whole;
    }

    /// Adds a part that is present.
    Part& addPart(const std::string& name, std::string_view text) {
        Part part;
        part.name = name;
        part.member = "./" + name + ".log";
        part.size = text.size();
        part.textSize = text.size();
        part.text.append(text);
        parts.push_back(std::move(part));
        return parts.back();
    }

    Part& addLog(const std::string& name, std::string_view text) {
        Part& part = addPart(name, text);
        part.log = true;
        return part;
    }

    Part& addMissing(const std::string& name) {
        Part part;
        part.name = name;
        part.expected = true;
        part.state = State::missing;
        parts.push_back(std::move(part));
        return parts.back();
    }

    /// Adds a value of the last part.
    void addValue(const std::string& title, const std::string& name, const Number& number,
                  const std::string& text, std::size_t occurrence = 1) {
        values.push_back({.part = parts.back().name,
                          .title = title,
                          .name = name,
                          .occurrence = occurrence,
                          .number = number,
                          .text = text});
    }
};

/// A time on 22 November 2026.
inline Time at(int hour, int minute, int second, int microsecond = 0) {
    using namespace std::chrono;
    return sys_days(year(2026) / 11 / 22) + hours(hour) + minutes(minute) + seconds(second) +
           microseconds(microsecond);
}

}  // namespace Report::Test
