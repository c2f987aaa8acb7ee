#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "Limits.hpp"

namespace Report {

/// The limits, in the order of the options that set them.
enum class Limit : std::uint8_t { bytes, members, line, name, depth, seconds, memory };

/// The name of the option that sets a limit, such as "--max-bytes".
std::string_view optionOf(Limit limit);

/// What a package has used of its limits. One budget covers a package and everything nested in it. Once a
/// limit is reached, what follows is not read.
class Budget {
public:
    /// The processor time counts from here.
    explicit Budget(const Limits& limits);

    const Limits& limits() const { return bounds; }

    /// Each counts something. Returns false, and remembers the limit, if it would exceed its limit. The
    /// caller then reads no more of it.
    [[nodiscard]] bool inflate(std::uint64_t bytes);
    [[nodiscard]] bool addMember();
    [[nodiscard]] bool keep(std::size_t bytes);
    /// False once nine tenths of the time are used: what was read has to be judged and printed, too.
    [[nodiscard]] bool checkTime();

    /// Sets processor time aside for what happens after the reading. Returns false, and sets nothing aside,
    /// if too little is left. This ends no reading.
    [[nodiscard]] bool reserve(std::chrono::nanoseconds time);

    /// Returns time that reserve() set aside.
    void release(std::chrono::nanoseconds time);

    /// Bytes that may still be inflated.
    std::uint64_t bytesLeft() const { return bounds.maxBytes - inflated; }

    /// What keep() allows in all. A quarter of the limit is for the program itself, and for what it prints.
    std::size_t mostKept() const { return bounds.maxMemory - bounds.maxMemory / 4; }

    /// Returns memory that keep() counted.
    void release(std::size_t bytes);

    /// The first limit of bytes, members, seconds or memory that was reached: it ends the reading.
    std::optional<Limit> reached() const { return first; }

private:
    bool exceed(Limit limit);
    bool isTimeLeft(std::chrono::nanoseconds more) const;

    Limits bounds;
    std::chrono::nanoseconds start;
    std::chrono::nanoseconds reserved{};
    std::uint64_t inflated = 0;
    std::size_t members = 0;
    std::size_t kept = 0;
    std::optional<Limit> first;
};

}  // namespace Report
