#pragma once

#include <string_view>

#include "NameFinder.hpp"
#include "Originals.hpp"
#include "PackageDigest.hpp"
#include "PackageVisitor.hpp"
#include "Sidecar.hpp"
#include "TextStream.hpp"

namespace Report {

/// Reads a package and collects what it has to hide.
class OriginalsFinder : public PackageVisitor {
public:
    /// `originals` must outlive this object.
    explicit OriginalsFinder(Originals& originals);

    void enterGzip() override {}
    void leaveGzip(const LayerEnd& end) override;
    void enterTar() override {}
    void leaveTar(const LayerEnd& /*end*/) override {}
    void beginMember(const MemberHeader& header) override;
    void data(std::string_view bytes) override;
    void endMember(const LayerEnd& end) override;

    /// Collects what the sidecar of the package has to hide.
    void takeSidecar(const Sidecar& sidecar, std::string text);

    /// Of what was read so far, without the sidecar.
    const PackageDigest& digest() const { return texts; }

private:
    void finishText();

    Originals& found;
    NameFinder names;
    TextStream contents;
    PackageDigest texts;
};

}  // namespace Report
