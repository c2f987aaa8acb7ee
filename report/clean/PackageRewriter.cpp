#include "PackageRewriter.hpp"

namespace Report {

PackageRewriter::PackageRewriter(const Replacements& replacements, PackageWriter& target)
    : rewriter(replacements),
      writer(target),
      contents(rewriter, [this](std::string_view bytes) { writer.data(bytes); }) {
}

void PackageRewriter::enterGzip() {
    writer.enterGzip();
}

void PackageRewriter::leaveGzip(const LayerEnd& /*end*/) {
    contents.finish();
    writer.leaveGzip();
}

void PackageRewriter::enterTar() {
    writer.enterTar();
}

void PackageRewriter::leaveTar(const LayerEnd& /*end*/) {
    writer.leaveTar();
}

void PackageRewriter::beginMember(const MemberHeader& header) {
    MemberHeader rewritten = header;
    for (std::string* text : {&rewritten.name, &rewritten.owner, &rewritten.group}) {
        *text = handleTokens(std::move(*text), rewriter);
    }
    writer.beginMember(rewritten);
}

void PackageRewriter::data(std::string_view bytes) {
    contents.append(bytes);
}

void PackageRewriter::endMember(const LayerEnd& /*end*/) {
    contents.finish();
    writer.endMember();
}

}  // namespace Report
