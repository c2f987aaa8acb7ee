#include "Phrases.hpp"
#include "Sections.hpp"

namespace Report::Html {
namespace {

constexpr std::size_t longestRunText = 1000;
constexpr std::size_t longestComplaints = std::size_t{64} * 1024;

template <typename Pairs>
Rows pairRows(const Pairs& pairs, std::size_t most) {
    Rows rows;
    for (const auto& [term, text] : pairs) {
        if (rows.size() == most) {
            break;
        }
        rows.push_back(Fields{}
                           .set("term", shortened(term, longestRunText))
                           .set("text", shortened(text, longestRunText)));
    }
    return rows;
}

std::string whyNoSidecar(const Package& package) {
    switch (package.sidecarState) {
        case SidecarState::absent:
            return "There is no record of the run beside the package: what korvel complained of is unknown.";
        case SidecarState::foreign:
        case SidecarState::unreadable:
            return "The record of the run was not used: " + shortened(package.sidecarError, longestRunText) +
                   ". What korvel complained of is unknown.";
        case SidecarState::used:
            break;
    }
    return {};
}

}  // namespace

void writeRun(std::ostream& out, const View& view) {
    Fields fields;
    fields.set("id", view.id)
        .set("label", view.label)
        .set("level", levelText(view.level))
        .set("sublevel", levelText(view.level + 1))
        .set("absent", whyNoSidecar(*view.package));
    if (view->sidecarState == SidecarState::used && view->sidecar) {
        const Sidecar& sidecar = *view->sidecar;
        fields.set("used", true)
            .set("keys", pairRows(sidecar.keys, view.allowance.rows))
            .setList("probes", pairRows(sidecar.probes, view.allowance.rows))
            .set("complaints", shortened(sidecar.standardError, longestComplaints));
    }
    fill(out, "run", fields);
}

}  // namespace Report::Html
