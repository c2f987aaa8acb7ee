#pragma once

#include <string>

#include "Package.hpp"
#include "Renderers.hpp"
#include "TextWriter.hpp"

namespace Report {

/// What the sections of show have in common.
struct ShowContext {
    TextWriter& text;
    const RuleSet& rules;
    const ShowChoice& choice;
    std::string prefix;  ///< of the names of parts, for a nested package
    std::string outer;   ///< the packages around a nested one, for its verdict: "netfp_logs.tgz > "

    bool selectsPart(const std::string& name) const;
};

// Each prints one section, with its heading, or nothing if the package has nothing for it.

void writeFindings(const ShowContext& show, const Package& package);
/// State and cause of each part that was chosen.
void writeChosenParts(const ShowContext& show, const Package& package);
void writeValues(const ShowContext& show, const Package& package);
/// Lines that are neither values nor log entries. If parts were chosen, their whole texts.
void writeTexts(const ShowContext& show, const Package& package);
void writeLogs(const ShowContext& show, const Package& package);

}  // namespace Report
