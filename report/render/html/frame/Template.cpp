#include "Template.hpp"

#include <cctype>
#include <kainjow/mustache.hpp>
#include <ostream>
#include <stdexcept>

#include "Assets.hpp"
#include "SafeText.hpp"

namespace Report::Html {
namespace {

namespace Mustache = kainjow::mustache;

Mustache::data dataOf(const Fields& fields);

struct ContentConverter {
    Mustache::data operator()(bool condition) const { return {condition}; }
    Mustache::data operator()(const std::string& text) const { return {forTerminal(text, true)}; }
    Mustache::data operator()(const Rows& rows) const {
        Mustache::list list;
        list.reserve(rows.size());
        for (const Fields& row : rows) {
            list.push_back(dataOf(row));
        }
        return {list};
    }
};

Mustache::data dataOf(const Fields& fields) {
    Mustache::data data{Mustache::data::type::object};
    for (const auto& [name, content] : fields.all()) {
        data[name] = std::visit(ContentConverter{}, content);
    }
    return data;
}

std::string templateText(std::string_view name) {
    return webAsset(std::string{name} + ".mustache");
}

}  // namespace

Fields& Fields::set(std::string name, std::string text) {
    if (text.empty()) {
        return set(std::move(name), false);
    }
    fields.emplace_back(std::move(name), std::move(text));
    return *this;
}

Fields& Fields::set(std::string name, bool condition) {
    fields.emplace_back(std::move(name), condition);
    return *this;
}

Fields& Fields::set(std::string name, Rows rows) {
    fields.emplace_back(std::move(name), std::move(rows));
    return *this;
}

Fields& Fields::setList(const std::string& name, Rows rows) {
    std::string condition = "has" + name;
    condition[3] = static_cast<char>(std::toupper(static_cast<unsigned char>(name.front())));
    set(std::move(condition), !rows.empty());
    return set(name, std::move(rows));
}

void fill(std::ostream& out, std::string_view name, const Fields& fields) {
    Mustache::mustache page{templateText(name)};
    if (!page.is_valid()) {
        throw std::logic_error(page.error_message());
    }
    Mustache::data data = dataOf(fields);
    for (const char* partial : {"evidence", "facts"}) {
        const std::string key = std::string{"partial-"} + partial;
        data[key] = Mustache::data{templateText(partial)};
    }
    page.render(data, out);
}

}  // namespace Report::Html
