#pragma once

#include <iosfwd>
#include <string>

#include "RuleSet.hpp"
#include "Template.hpp"
#include "View.hpp"

namespace Report::Html {

/// The verdict of a package, what it means, and what is known of the package as a whole, for the partial
/// template "facts" and the templates that contain it.
Fields headlineOf(const View& view, Rows moreFacts = {});

/// How many of the expected parts are present: "22 of 23".
std::string partsFact(const Package& package);

/// The kind of a package, such as "pkg-sup", or "unknown".
std::string kindFact(const Package& package);

/// A row of the list of facts.
Fields fact(std::string term, std::string text);

/// Which sections of a package a page has, for the page's navigation.
Rows contentsOf(const View& view);

/// Each writes a section of a package. A section that would have nothing to show is left out; findings and
/// parts are always there.
void writeFindings(std::ostream& out, const View& view);
void writeParts(std::ostream& out, const View& view);
void writePools(std::ostream& out, const View& view);
void writeValues(std::ostream& out, const View& view, const RuleSet& rules);
void writeFreshness(std::ostream& out, const View& view);
void writeRun(std::ostream& out, const View& view);
void writeIrregular(std::ostream& out, const View& view);

}  // namespace Report::Html
