#include "View.hpp"

#include <algorithm>
#include <numeric>

#include "MemberName.hpp"

namespace Report::Html {
namespace {

constexpr std::size_t mostNested = 100;  // packages inside packages, on the whole page

std::size_t countPackages(std::span<const Package> packages) {
    std::size_t count = packages.size();
    for (const Package& package : packages) {
        count += countPackages(package.nested);
    }
    return count;
}

Allowance allowanceFor(std::size_t packages) {
    const auto share = [&](std::size_t whole, std::size_t least) {
        return std::max(whole / packages, least);
    };
    return {share(2000, 60), share(300, 20), share(4000, 250), share(500, 20)};
}

void addNested(View& view, std::size_t& left) {
    for (const Package& package : view.package->nested) {
        if (left == 0) {
            ++view.nestedLeftOut;
            continue;
        }
        --left;
        View nested;
        nested.package = &package;
        nested.id = view.id + '-' + std::to_string(view.nested.size() + 1);
        const std::string member = normalName(package.source);
        nested.label = view.label + " / " + member;
        nested.logPrefix = view.logPrefix + std::string{partName(member)} + "/";
        nested.level = view.level + 2;
        nested.allowance = view.allowance;
        addNested(nested, left);
        view.nested.push_back(std::move(nested));
    }
}

}  // namespace

std::vector<View> viewsOf(std::span<const Package> packages) {
    std::size_t left = mostNested;
    const bool several = packages.size() > 1;
    const Allowance allowance =
        allowanceFor(std::max<std::size_t>(1, std::min(countPackages(packages), packages.size() + left)));
    std::vector<View> views;
    for (const Package& package : packages) {
        const std::string number = std::to_string(views.size() + 1);
        View view;
        view.package = &package;
        view.id = 'p' + number;
        view.label = several ? number + ": " + fileName(package) : fileName(package);
        view.logPrefix = several ? number + ": " : "";
        view.level = several ? 3 : 2;
        view.allowance = allowance;
        addNested(view, left);
        views.push_back(std::move(view));
    }
    return views;
}

std::string fileName(const Package& package) {
    return package.source.substr(package.source.rfind('/') + 1);  // npos + 1 is 0
}

std::vector<ValueTable> tablesOf(const View& view, const RuleSet& rules) {
    return valueTables(
        *view.package, [&](const Value& value) { return rules.names(value); },
        [](std::string_view) { return true; });
}

std::vector<std::size_t> partsByName(const Package& package) {
    std::vector<std::size_t> places(package.parts.size());
    std::iota(places.begin(), places.end(), std::size_t{0});
    std::ranges::stable_sort(
        places, {}, [&](std::size_t place) -> const std::string& { return package.parts[place].name; });
    return places;
}

std::string textId(const View& view, std::size_t part) {
    return view.id + "-t" + std::to_string(part + 1);
}

std::string textIdOf(const View& view, const std::string& part) {
    const auto& parts = view->parts;
    const auto found = std::ranges::find(parts, part, &Part::name);
    return found != parts.end() && hasText(*found)
               ? textId(view, static_cast<std::size_t>(found - parts.begin()))
               : std::string{};
}

bool hasText(const Part& part) {
    return part.text.size() > 0;
}

std::string levelText(std::size_t level) {
    return std::to_string(std::min<std::size_t>(level, 6));
}

}  // namespace Report::Html
