#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "PackageReader.hpp"
#include "PackageVisitor.hpp"

namespace Report {

/// Passes a package on to another visitor, and looks for what cannot be cleaned or restored: anything that is
/// not read, because it is damaged, beyond a limit or compressed in another way, and anything that the reader
/// does not follow. After the first such thing, the other visitor receives nothing more.
class PackageGuard : public PackageVisitor {
public:
    /// All must outlive the guard. `name` is the package's, for messages.
    PackageGuard(std::string name, Budget& memory, PackageVisitor& visitor)
        : package(std::move(name)), budget(memory), next(visitor) {}

    void enterGzip() override;
    void leaveGzip(const LayerEnd& end) override;
    void enterTar() override;
    void leaveTar(const LayerEnd& end) override;
    void beginMember(const MemberHeader& header) override;
    void data(std::string_view bytes) override;
    void endMember(const LayerEnd& end) override;

    /// Throws CleanRefusal if there was such a thing. Call it with the result of readPackage().
    void checkEnd(const PackageFacts& facts) const;

private:
    template <typename Event>
    void forward(Event event);
    void check(const LayerEnd& end);
    void note(std::string_view reason);

    std::string package;
    Budget& budget;
    PackageVisitor& next;
    std::vector<std::string> members;          ///< the open ones, from the outside inwards
    std::vector<std::set<std::string>> names;  ///< normal names in the open archives
    std::string start;                         ///< of the contents
    std::string problem;                       ///< the first one
};

}  // namespace Report
