#include "Pool.hpp"

#include <array>
#include <cctype>
#include <map>
#include <string_view>
#include <tuple>

namespace Report::Html {
namespace {

enum class Role : std::uint8_t { used, free, all, highest, lowest };

struct RoleWord {
    std::string_view words;
    Role role;
};

// A longer ending comes before an ending that it contains.
constexpr std::array roleWords{
    RoleWord{"in use highest", Role::highest},
    RoleWord{"used highest", Role::highest},
    RoleWord{"highest in use", Role::highest},
    RoleWord{"free lowest", Role::lowest},
    RoleWord{"lowest free", Role::lowest},
    RoleWord{"highest", Role::highest},
    RoleWord{"peak", Role::highest},
    RoleWord{"lowest", Role::lowest},
    RoleWord{"in use", Role::used},
    RoleWord{"used", Role::used},
    RoleWord{"allocated", Role::used},
    RoleWord{"free", Role::free},
    RoleWord{"unused", Role::free},
    RoleWord{"available", Role::free},
    RoleWord{"in all", Role::all},
    RoleWord{"total", Role::all},
    RoleWord{"capacity", Role::all},
    RoleWord{"size", Role::all},
};

/// Words in lower case with one blank between them: "Bytes_in-use, highest" is "bytes in use highest".
std::string plainWords(std::string_view name) {
    std::string words;
    for (const char letter : name) {
        if (std::isalnum(static_cast<unsigned char>(letter)) != 0) {
            words += static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
        } else if (!words.empty() && words.back() != ' ') {
            words += ' ';
        }
    }
    if (words.ends_with(' ')) {
        words.pop_back();
    }
    return words;
}

struct NamedRole {
    std::string pool;
    Role role;
};

/// What a value says about which pool. A name without one of the words is the size of a pool of that name.
NamedRole roleOf(std::string_view name) {
    const std::string words = plainWords(name);
    for (const auto& [ending, role] : roleWords) {
        if (words == ending) {
            return {{}, role};
        }
        if (words.ends_with(ending) && words[words.size() - ending.size() - 1] == ' ') {
            return {words.substr(0, words.size() - ending.size() - 1), role};
        }
        if (words.starts_with(ending) && words[ending.size()] == ' ') {
            return {words.substr(ending.size() + 1), role};
        }
    }
    return {words, Role::all};
}

std::optional<std::uint64_t> countOf(const Number& number) {
    if (const auto* natural = std::get_if<std::uint64_t>(&number)) {
        return *natural;
    }
    if (const auto* integer = std::get_if<std::int64_t>(&number); integer != nullptr && *integer >= 0) {
        return static_cast<std::uint64_t>(*integer);
    }
    return std::nullopt;
}

using Roles = std::map<Role, std::uint64_t>;

std::optional<std::uint64_t> roleIn(const Roles& roles, Role role) {
    const auto found = roles.find(role);
    return found == roles.end() ? std::nullopt : std::optional{found->second};
}

/// `whole` without `part`, or 0.
std::uint64_t rest(std::uint64_t whole, std::uint64_t part) {
    return whole > part ? whole - part : 0;
}

std::optional<Pool> poolOf(const Roles& roles) {
    const auto used = roleIn(roles, Role::used);
    const auto free = roleIn(roles, Role::free);
    const auto all = roleIn(roles, Role::all);
    if (static_cast<int>(used.has_value()) + static_cast<int>(free.has_value()) +
            static_cast<int>(all.has_value()) <
        2) {
        return std::nullopt;
    }
    Pool pool;
    pool.used = used ? *used : rest(*all, *free);
    pool.free = free ? *free : rest(*all, *used);
    pool.all = all ? *all : pool.used + pool.free;
    pool.addsUp = pool.used <= pool.all && pool.all - pool.used == pool.free;
    pool.highest = roleIn(roles, Role::highest);
    pool.lowest = roleIn(roles, Role::lowest);
    return pool;
}

/// The free blocks of a heap are the gaps between the others, and no capacity.
bool countsGaps(const std::string& name, const Roles& roles) {
    return !roles.contains(Role::all) && (name == "blocks" || name.ends_with(" blocks"));
}

}  // namespace

std::vector<Pool> poolsOf(const std::vector<Value>& values) {
    struct Candidate {
        std::string part;
        std::string name;
        Roles roles;
    };
    std::vector<Candidate> candidates;  // in the order of the package
    std::map<std::tuple<std::string, std::string, std::string, std::size_t>, std::size_t> known;
    for (const Value& value : values) {
        const auto count = countOf(value.number);
        if (!count) {
            continue;
        }
        const NamedRole named = roleOf(value.name);
        const auto [place, added] = known.emplace(
            std::tuple{value.part, value.title, named.pool, value.occurrence}, candidates.size());
        if (added) {
            candidates.push_back({value.part, named.pool, {}});
        }
        candidates[place->second].roles.emplace(named.role, *count);
    }
    std::vector<Pool> pools;
    for (const Candidate& candidate : candidates) {
        if (countsGaps(candidate.name, candidate.roles)) {
            continue;
        }
        if (auto pool = poolOf(candidate.roles)) {
            pool->part = candidate.part;
            pool->name = candidate.name.empty() ? candidate.part : candidate.name;
            pools.push_back(std::move(*pool));
        }
    }
    return pools;
}

}  // namespace Report::Html
