#include "PageFrame.hpp"

#include <ostream>

#include "Assets.hpp"
#include "Template.hpp"

namespace Report::Html {

namespace {

const char* assetOf(Script script) {
    return script == Script::page ? "page.js" : "page-with-plots.js";
}

}  // namespace

void writePageHead(std::ostream& out, const std::string& title, Script script) {
    fill(out, "head",
         Fields{}
             .set("scriptHash", webAssetHash(assetOf(script)))
             .set("styleHash", webAssetHash("page.css"))
             .set("title", title));
    out << "<style>" << webAsset("page.css") << "</style>\n";
}

void writePageFooter(std::ostream& out, std::string_view origin) {
    fill(out, "bottom", Fields{}.set("origin", origin));
}

void writePageEnd(std::ostream& out, Script script) {
    out << "<script>" << webAsset(assetOf(script)) << "</script>\n</body>\n</html>\n";
}

void beginData(std::ostream& out, std::string_view identifier) {
    out << "<script type=\"application/json\" id=\"" << identifier << "\">";
}

void endData(std::ostream& out) {
    out << "</script>\n";
}

std::string embeddable(std::string_view json) {
    std::string safe;
    safe.reserve(json.size());
    for (const char letter : json) {
        if (letter == '<') {
            safe += "\\u003c";
        } else {
            safe += letter;
        }
    }
    return safe;
}

}  // namespace Report::Html
