#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "AsideFile.hpp"
#include "DescriptorStream.hpp"
#include "Pager.hpp"
#include "Renderers.hpp"

namespace Report {

/// A result that could not be written. what() is one line for the user.
class OutputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Where the results go.
struct Destination {
    std::optional<std::string> file;  ///< none, or "-": standard output
    bool pager = false;               ///< whether a pager shows the results if standard output is a terminal
};

/// Writes the results of a run to a file, to standard output or to a pager. Nothing is opened before the
/// first result. Each function throws OutputError.
class Output {
public:
    explicit Output(Destination where) : destination(std::move(where)) {}

    using Print = std::function<void(std::ostream& out, const TextStyle& style)>;

    /// Has `print` write a result. A blank line separates results. After the user has closed the pager,
    /// results are dropped.
    void write(const Print& print);

    /// Ends the results. A file takes its name only now; without a result there is no file.
    void finish();

private:
    void open();
    void openStandardOutput();
    void guarded(const std::function<void()>& step);

    Destination destination;
    std::unique_ptr<AsideFile> file;
    std::unique_ptr<Pager> pager;
    std::unique_ptr<DescriptorStream> buffer;
    TextStyle style;
    bool readerGone = false;
};

}  // namespace Report
