#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Mapping.hpp"
#include "PackageDigest.hpp"
#include "PackageVisitor.hpp"
#include "Rewriter.hpp"
#include "TextStream.hpp"

namespace Report {

/// Looks for originals in clean texts, and restores these.
class LeakFinder : public Rewriter {
public:
    /// `known` must outlive this object.
    explicit LeakFinder(const Mapping& known) : Rewriter(known.originals()), mapping(known) {}

    bool address(const FoundAddress& found, std::span<char> spelling) override;
    void word(std::span<char> text) override;

    /// The first original that is not a replacement as well.
    const std::optional<std::string>& leak() const { return first; }

private:
    const Mapping& mapping;
    std::optional<std::string> first;
    std::string foldedWord;
};

/// Reads a clean package again: looks for originals, and restores all texts.
class LeakCheck : public PackageVisitor {
public:
    /// `mapping` must outlive this object.
    explicit LeakCheck(const Mapping& mapping);

    void enterGzip() override {}
    void leaveGzip(const LayerEnd& end) override;
    void enterTar() override {}
    void leaveTar(const LayerEnd& /*end*/) override {}
    void beginMember(const MemberHeader& header) override;
    void data(std::string_view bytes) override;
    void endMember(const LayerEnd& end) override;

    const std::optional<std::string>& leak() const { return leaks.leak(); }
    /// Of the restored package.
    const PackageDigest& restored() const { return texts; }

private:
    LeakFinder leaks;
    TextStream contents;
    PackageDigest texts;
};

}  // namespace Report
