#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "Package.hpp"
#include "RuleSet.hpp"
#include "ValueTables.hpp"

namespace Report::Html {

/// How much of a page each package may use, so that the page stays usable. Values, parts and findings are
/// rows; what is beyond them is counted on the page.
struct Allowance {
    std::size_t parts = 0;
    std::size_t findings = 0;
    std::size_t values = 0;
    std::size_t rows = 0;  ///< of any other table
};

/// A package and its place on the page.
struct View {
    const Package* package = nullptr;
    std::string id;     ///< the beginning of the identifiers of its elements: "p1", "p1-2" for a nested one
    std::string label;  ///< unique on the page, for people: the file's name, and the nested member
    std::string
        logPrefix;  ///< before the names of its logs in the timeline; empty if the page has one package
    std::size_t level = 2;  ///< of the headings of its sections
    Allowance allowance;
    std::vector<View> nested;
    std::size_t nestedLeftOut = 0;

    const Package* operator->() const { return package; }
};

/// The packages of a page with their nested packages.
std::vector<View> viewsOf(std::span<const Package> packages);

/// Calls `visit` with each view, and with the nested views after it.
template <typename Visit>
void forEachView(const std::vector<View>& views, const Visit& visit) {
    for (const View& view : views) {
        visit(view);
        forEachView(view.nested, visit);
    }
}

/// The name of a package's file, without its folder.
std::string fileName(const Package& package);

/// The tables of a package's values.
std::vector<ValueTable> tablesOf(const View& view, const RuleSet& rules);

/// The places of a package's parts, in the order of their names.
std::vector<std::size_t> partsByName(const Package& package);

/// The identifier of the element with the text of a part.
std::string textId(const View& view, std::size_t part);

/// The same for the part with a name, or an empty text if no text of this part is on the page.
std::string textIdOf(const View& view, const std::string& part);

/// Whether the page shows a text of this part.
bool hasText(const Part& part);

/// A heading level as the template wants it: at most 6.
std::string levelText(std::size_t level);

}  // namespace Report::Html
