#pragma once

#include <memory>
#include <string_view>

#include "Budget.hpp"
#include "ByteSink.hpp"
#include "PackageVisitor.hpp"

namespace Report {

/// Writes a package from events that follow the grammar of PackageVisitor. Members and contents that
/// readPackage reports come back unchanged if its events are passed on; padding, the name in a gzip header
/// and holes of sparse files do not.
///
/// The header of a member comes before its data, so what is compressed inside a member is collected in memory
/// until the member ends. The budget counts that memory.
///
/// Each call throws std::length_error if the memory limit is reached, and what the sink throws. The output is
/// then incomplete. Calls against the grammar throw std::logic_error, and so do a member with more or less
/// data than its header says, a device and a member of unknown type.
class PackageWriter {
public:
    /// Both must outlive the writer.
    PackageWriter(ByteSink& sink, Budget& budget);
    ~PackageWriter();
    PackageWriter(const PackageWriter&) = delete;
    PackageWriter& operator=(const PackageWriter&) = delete;
    PackageWriter(PackageWriter&&) = delete;
    PackageWriter& operator=(PackageWriter&&) = delete;

    void enterGzip();
    /// Writes the trailer. After the outermost layer, the output is complete.
    void leaveGzip();
    void enterTar();
    /// Writes the end mark.
    void leaveTar();

    /// `header.size` is the number of bytes that data() will get. If a gzip layer follows, the size is that
    /// of the compressed bytes, whatever the header says.
    void beginMember(const MemberHeader& header);
    void data(std::string_view bytes);
    void endMember();

private:
    class Layers;

    std::unique_ptr<Layers> layers;
};

}  // namespace Report
