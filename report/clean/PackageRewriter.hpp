#pragma once

#include <string_view>

#include "PackageVisitor.hpp"
#include "PackageWriter.hpp"
#include "Rewriter.hpp"
#include "TextStream.hpp"

namespace Report {

/// Writes a copy of a package in which names and addresses are replaced: in the contents of members, in their
/// names, owners and groups, and in all nested layers.
class PackageRewriter : public PackageVisitor {
public:
    /// Both must outlive this object.
    PackageRewriter(const Replacements& replacements, PackageWriter& target);

    void enterGzip() override;
    void leaveGzip(const LayerEnd& end) override;
    void enterTar() override;
    void leaveTar(const LayerEnd& end) override;
    void beginMember(const MemberHeader& header) override;
    void data(std::string_view bytes) override;
    void endMember(const LayerEnd& end) override;

private:
    Rewriter rewriter;
    PackageWriter& writer;
    TextStream contents;
};

}  // namespace Report
