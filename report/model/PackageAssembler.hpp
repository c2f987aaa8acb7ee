#pragma once

#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "Memory.hpp"
#include "Package.hpp"
#include "PackageVisitor.hpp"
#include "TextReader.hpp"

namespace Report {

/// Builds packages as plain data from the events of readPackage(). What only the whole file or its sidecar
/// tells is still missing: identity, time, and the times of entries beside overlaps.
class PackageAssembler : public PackageVisitor {
public:
    /// With `keepAll`, all texts are kept; else only small ones, which may be evidence. `forms` are further
    /// forms of log lines, or null.
    PackageAssembler(Budget& budgetOfPackage, bool keepAll, std::shared_ptr<const LogForms> forms);
    PackageAssembler(const PackageAssembler&) = delete;
    PackageAssembler& operator=(const PackageAssembler&) = delete;
    PackageAssembler(PackageAssembler&&) = delete;
    PackageAssembler& operator=(PackageAssembler&&) = delete;
    ~PackageAssembler() override;

    void enterGzip() override;
    void leaveGzip(const LayerEnd& end) override;
    void enterTar() override;
    void leaveTar(const LayerEnd& end) override;
    void beginMember(const MemberHeader& header) override;
    void data(std::string_view bytes) override;
    void endMember(const LayerEnd& end) override;

    /// The package, once the reading has ended.
    Package take();

private:
    struct Member;
    struct Level;

    Member* currentMember();
    bool addFolders(Level& level, std::string_view normal, bool isFolder);
    std::string addPart(Level& level, const MemberHeader& header, const std::string& normal);
    void endLayer(const LayerEnd& end);
    static void endText(Member& member);
    void endNested(Package& package, Member& member);
    void addUnread(Package& package, const std::string& member, Limit limit);

    Memory memory;
    TextReader::Context context;
    std::vector<std::unique_ptr<Level>> levels;  // the package and the nested ones that are being read
};

}  // namespace Report
