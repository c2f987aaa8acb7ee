#pragma once

#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "PackageLoader.hpp"

namespace ReportFuzz {

/// A package and its sidecar that a text describes. A line `== NAME` begins a member,
/// whose contents are the lines up to the next one. `== NAME TIME` also sets the time of this member and the
/// next ones.
///
///     == ./mmi/sfn/HeapStats.log 1795336233
///     heap
///       in use   17
///     == run
///     format: 1
///
/// A name that ends in `.gz` stands for a compressed member, `.tgz` for a nested package with the members up
/// to
/// `== end`, and `run` for the sidecar, in which `@` is replaced by the package's checksum.
class FuzzPackage {
public:
    /// `others` are the names of texts that are no members, besides `run`.
    explicit FuzzPackage(std::string_view description, std::initializer_list<std::string_view> others = {});

    const std::string& bytes() const { return package; }

    /// A text of `others`, or `run`.
    std::optional<std::string> find(std::string_view other) const;

    /// Loads the package with its sidecar.
    Report::Package load(Report::Keep keep, std::shared_ptr<const Report::LogForms> forms = nullptr) const;

private:
    std::string package;
    std::map<std::string, std::string, std::less<>> otherTexts;
};

}  // namespace ReportFuzz
