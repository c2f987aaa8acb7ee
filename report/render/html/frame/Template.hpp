#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace Report::Html {

class Fields;
using Rows = std::vector<Fields>;

/// What a template is filled with: texts, conditions and lists by name. Texts may be raw bytes of a package.
class Fields {
public:
    using Content = std::variant<bool, std::string, Rows>;

    /// An empty text is false, so a template can ask for it.
    Fields& set(std::string name, std::string text);
    Fields& set(std::string name, std::string_view text) { return set(std::move(name), std::string{text}); }
    Fields& set(std::string name, const char* text) { return set(std::move(name), std::string{text}); }
    Fields& set(std::string name, bool condition);
    Fields& set(std::string name, Rows rows);
    /// Also sets a condition, such as `hasParts` for the list `parts`: whether the list has rows.
    Fields& setList(const std::string& name, Rows rows);

    const std::vector<std::pair<std::string, Content>>& all() const { return fields; }

private:
    std::vector<std::pair<std::string, Content>> fields;
};

/// Writes the template `name` of report/web/templates, without its ending, filled with `fields`. Makes every
/// text safe first: control characters and invalid bytes become visible, and markup becomes text.
void fill(std::ostream& out, std::string_view name, const Fields& fields);

}  // namespace Report::Html
