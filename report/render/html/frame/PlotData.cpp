#include "PlotData.hpp"

#include <nlohmann/json.hpp>
#include <ostream>
#include <type_traits>
#include <utility>
#include <variant>

#include "PageFrame.hpp"
#include "SafeText.hpp"

namespace Report::Html {

namespace {

using Json = nlohmann::json;

Json dataOf(const Number& number) {
    return std::visit(
        [](auto value) {
            if constexpr (std::is_same_v<decltype(value), std::monostate>) {
                return Json();
            } else {
                return Json(value);
            }
        },
        number);
}

Json dataOf(const Plot& plot) {
    Json lines = Json::array();
    for (const PlotLine& line : plot.lines) {
        Json numbers = Json::array();
        for (const Number& number : line.numbers) {
            numbers.push_back(dataOf(number));
        }
        lines.push_back({{"label", forTerminal(line.label)}, {"numbers", std::move(numbers)}});
    }
    return {{"part", forTerminal(plot.part)}, {"name", forTerminal(plot.name)}, {"lines", std::move(lines)}};
}

}  // namespace

void writePlotData(std::ostream& out, const std::vector<PlotSection>& sections) {
    Json list = Json::array();
    for (const PlotSection& section : sections) {
        Json plots = Json::array();
        for (const Plot& plot : section.plots) {
            plots.push_back(dataOf(plot));
        }
        list.push_back({{"id", section.id}, {"times", section.times}, {"plots", std::move(plots)}});
    }
    beginData(out, "trend-data");
    out << embeddable(list.dump(-1, ' ', true, Json::error_handler_t::replace));
    endData(out);
}

}  // namespace Report::Html
