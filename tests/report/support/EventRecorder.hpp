#pragma once

#include <string>
#include <string_view>

#include "PackageVisitor.hpp"

namespace ReportTest {

/// Writes down what a package contains, a line for each event. The data of a member or layer are one line.
class EventRecorder : public Report::PackageVisitor {
public:
    void enterGzip() override { add("gzip {"); }
    void leaveGzip(const Report::LayerEnd& end) override { leave("}", end); }
    void enterTar() override { add("tar {"); }
    void leaveTar(const Report::LayerEnd& end) override { leave("}", end); }
    void beginMember(const Report::MemberHeader& header) override;
    void data(std::string_view bytes) override { pending += bytes; }
    void endMember(const Report::LayerEnd& end) override { leave("end", end); }

    /// Indented by two blanks a layer. A layer or member that is not whole ends with the reason:
    ///
    ///     gzip {
    ///       tar {
    ///         file ./fuse/HistoryLog.log 5
    ///           "hello"
    ///         end
    ///       } cut: the tar archive has no complete end mark
    ///     }
    const std::string& text() const { return lines; }

private:
    void add(const std::string& line);
    void leave(const std::string& line, const Report::LayerEnd& end);
    void flush();
    void writeLine(const std::string& line);

    std::string lines;
    std::string pending;  ///< data
    std::size_t indent = 0;
};

/// "cut: reason"; empty for a whole layer.
std::string describe(const Report::LayerEnd& end);

}  // namespace ReportTest
