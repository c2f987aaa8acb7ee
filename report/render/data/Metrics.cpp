#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <limits>
#include <map>
#include <optional>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <variant>

#include "Decimal.hpp"
#include "Names.hpp"
#include "Renderers.hpp"
#include "SafeText.hpp"

namespace Report {
namespace {

/// The newest package of each board, by the label of the board.
using Newest = std::map<std::string, const Package*>;

/// A label. Control characters and bytes that are not UTF-8 are visible escapes in its value.
std::string label(std::string_view name, std::string_view bytes) {
    std::string text(name);
    text += "=\"";
    for (const char character : forTerminal(bytes)) {
        if (character == '\\' || character == '"') {
            text += '\\';
        }
        text += character;
    }
    return text += '"';
}

/// An unknown board has the name of its package's checksum, so that it joins no other.
std::string boardLabel(const Package& package) {
    if (package.board) {
        return label("board", *package.board);
    }
    // The checksum is unknown if a limit ended the reading.
    return label("board", package.sha256.empty() ? "file:" + package.source : "sha256:" + package.sha256);
}

/// A package with an unset clock is older than one with a time, and newer than one without.
bool isOlder(const Package& package, const Package& other) {
    const auto age = [](const Package& aged) {
        return std::tuple(aged.time.has_value(), !aged.clockUnset, aged.time);
    };
    return age(package) < age(other);
}

Newest newestOf(std::span<const Package> packages) {
    Newest newest;
    for (const Package& package : packages) {
        const Package*& kept = newest[boardLabel(package)];
        if (kept == nullptr || !isOlder(package, *kept)) {
            kept = &package;
        }
    }
    return newest;
}

std::string sample(double number) {
    if (!std::isfinite(number)) {
        return std::isnan(number) ? "NaN" : number < 0 ? "-Inf" : "+Inf";
    }
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number);
    return {text.data(), end.ptr};
}

/// A sample is a double at its reader. A number beyond 64 bits becomes the nearest one, or NaN if it is
/// hexadecimal.
struct Sample {
    const std::string& text;  ///< the number as it was written

    std::string operator()(std::monostate) const {
        const std::optional<Decimal> exact = Decimal::parse(text);
        return sample(exact ? exact->approximate() : std::numeric_limits<double>::quiet_NaN());
    }
    std::string operator()(double number) const { return sample(number); }
    template <std::integral Integer>
    std::string operator()(Integer number) const {
        return std::to_string(number);
    }
};

void writeHead(std::ostream& out, std::string_view name, std::string_view help) {
    out << "# HELP " << name << ' ' << help << "\n# TYPE " << name << " untyped\n";
}

void writeVerdicts(std::ostream& out, const Newest& newest) {
    constexpr std::array verdicts{Verdict::whole, Verdict::incomplete, Verdict::notFullyRead,
                                  Verdict::cut,   Verdict::altered,    Verdict::unreadable};
    writeHead(out, "korvel_package_verdict",
              "1 for the verdict on the newest package of the board, 0 for others.");
    for (const auto& [board, package] : newest) {
        for (const Verdict verdict : verdicts) {
            out << "korvel_package_verdict{" << board << ',' << label("verdict", nameOf(verdict)) << "} "
                << (package->verdict == verdict ? 1 : 0) << '\n';
        }
    }
}

/// Writes the seconds from `start` to `end` for each package with a time, which nullopt means.
void writeSeconds(std::ostream& out, const Newest& newest, std::string_view name, std::string_view help,
                  std::optional<Time> start, std::optional<Time> end) {
    writeHead(out, name, help);
    for (const auto& [board, package] : newest) {
        if (package->time) {
            const auto seconds = end.value_or(*package->time) - start.value_or(*package->time);
            out << name << '{' << board << "} " << sample(std::chrono::duration<double>(seconds).count())
                << '\n';
        }
    }
}

/// Counts equal names again: two names of a package can have the same visible form.
void writeValues(std::ostream& out, const std::string& board, const Package& package) {
    std::unordered_map<std::string, std::size_t> occurrences;
    for (const Value& value : package.values) {
        const std::string labels =
            label("part", value.part) + ',' + label("title", value.title) + ',' + label("name", value.name);
        out << "korvel_value{" << board << ',' << labels << ','
            << label("occurrence", std::to_string(++occurrences[labels])) << "} "
            << std::visit(Sample{value.text}, value.number) << '\n';
    }
}

}  // namespace

void renderMetrics(std::ostream& out, std::span<const Package> packages, Time now) {
    const Newest newest = newestOf(packages);
    writeVerdicts(out, newest);
    writeSeconds(out, newest, "korvel_package_time_seconds",
                 "Time of the newest package of the board, in seconds since 1970.", Time(), std::nullopt);
    writeSeconds(out, newest, "korvel_package_age_seconds",
                 "Age of the newest package of the board when this text was written.", std::nullopt, now);
    writeHead(out, "korvel_value", "A number in the newest package of the board.");
    for (const auto& [board, package] : newest) {
        writeValues(out, board, *package);
    }
}

}  // namespace Report
