#include "OriginalsFinder.hpp"

#include <string>
#include <utility>

#include "SidecarText.hpp"

namespace Report {

OriginalsFinder::OriginalsFinder(Originals& originals)
    : found(originals),
      names([this](const std::string& name) { found.addName(name); }),
      contents(originals, [](std::string_view) {}) {
}

void OriginalsFinder::leaveGzip(const LayerEnd& /*end*/) {
    finishText();
}

void OriginalsFinder::beginMember(const MemberHeader& header) {
    for (const std::string* text : {&header.name, &header.owner, &header.group}) {
        static_cast<void>(handleTokens(*text, found));
    }
    names.takeUser(header.owner);
    names.takeUser(header.group);
    texts.addHeader(header);
}

void OriginalsFinder::data(std::string_view bytes) {
    contents.append(bytes);
    names.append(bytes);
    texts.addContents(bytes);
}

void OriginalsFinder::endMember(const LayerEnd& /*end*/) {
    finishText();
}

void OriginalsFinder::finishText() {
    contents.finish();
    names.finish();
}

void OriginalsFinder::takeSidecar(const Sidecar& sidecar, std::string text) {
    static_cast<void>(handleSidecar(std::move(text), found));
    if (const std::string* board = sidecar.find("board")) {
        names.takeHost(*board);
    }
    names.append(sidecar.standardError);
    names.finish();
}

}  // namespace Report
