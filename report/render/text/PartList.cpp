#include "PartList.hpp"

#include <algorithm>
#include <cstddef>
#include <map>
#include <set>
#include <string_view>
#include <utility>

namespace Report {
namespace {

struct SplitName {
    std::string folder;  ///< empty if there is none
    std::string name;
};

SplitName split(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos) {
        return {{}, std::string(path)};
    }
    return {std::string(path.substr(0, slash)), std::string(path.substr(slash + 1))};
}

/// "mmi" with iwf and sfn is "mmi/{iwf,sfn}".
std::string joined(const std::string& parent, const std::vector<std::string>& siblings) {
    if (siblings.size() == 1) {
        return parent + "/" + siblings.front();
    }
    std::string folder = parent + "/{";
    for (const std::string& sibling : siblings) {
        folder.append(sibling).append(",");
    }
    folder.back() = '}';
    return folder;
}

}  // namespace

std::vector<PartFolder> byFolder(const std::vector<std::string>& parts) {
    std::map<std::string, std::set<std::string>> folders;
    for (const std::string& part : parts) {
        SplitName place = split(part);
        folders[std::move(place.folder)].insert(std::move(place.name));
    }
    std::vector<PartFolder> rows;
    std::map<std::pair<std::string, std::set<std::string>>, std::vector<std::string>> siblings;
    for (auto& [folder, names] : folders) {
        SplitName place = split(folder);
        if (place.folder.empty()) {
            rows.push_back({folder, {names.begin(), names.end()}});
        } else {
            siblings[{std::move(place.folder), std::move(names)}].push_back(std::move(place.name));
        }
    }
    for (const auto& [shared, lasts] : siblings) {
        rows.push_back({joined(shared.first, lasts), {shared.second.begin(), shared.second.end()}});
    }
    std::sort(rows.begin(), rows.end(),
              [](const PartFolder& a, const PartFolder& b) { return a.folder < b.folder; });
    return rows;
}

}  // namespace Report
