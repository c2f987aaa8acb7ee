#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace Report::Html {

/// Which script a page has.
enum class Script { page, pageWithPlots };

/// Writes the beginning of a page, with its style. Only the script and this style can have an effect.
void writePageHead(std::ostream& out, const std::string& title, Script script);

/// Writes the end of the content. `origin` is where it comes from: "the packages named above".
void writePageFooter(std::ostream& out, std::string_view origin);

/// Writes the script, which runs at once, and the end of the page. Data for the script stands before it.
void writePageEnd(std::ostream& out, Script script);

/// Begins a block of data for the script. A browser never runs it, whatever texts it holds.
void beginData(std::ostream& out, std::string_view identifier);
void endData(std::ostream& out);

/// JSON without `<`: nothing in it ends the block or begins a comment.
std::string embeddable(std::string_view json);

}  // namespace Report::Html
