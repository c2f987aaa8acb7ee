#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>

#include "Renderers.hpp"

namespace Report {

/// Colours and weights of a terminal. They never carry meaning alone.
enum class Ink { plain, bold, faint, good, warning, bad };

/// Columns of a terminal that a safe text takes. Each character counts as one.
std::size_t columnsOf(std::string_view safe);

/// The blanks that fill the text up to a number of columns.
std::string padding(std::size_t columns, std::string_view safe);

/// The text, cut to a number of columns. A text that was cut ends in "...".
std::string cutTo(std::size_t columns, std::string_view safe);

/// Writes safe text to a terminal or a file, with headings, paragraphs and labels in columns.
class TextWriter {
public:
    static constexpr std::size_t indent = 2;  ///< columns before the rows below a heading

    /// The stream must outlive the writer.
    TextWriter(std::ostream& stream, const TextStyle& textStyle) : out(stream), style(textStyle) {}

    std::size_t width() const { return style.width; }

    /// The text in a colour, if colours are on.
    std::string inked(Ink ink, std::string_view safe) const;

    /// A blank line and a heading.
    void heading(std::string_view safe);
    void line(std::string_view safe = {});
    /// Breaks the text at blanks. Each of its lines begins with `margin` blanks.
    void paragraph(std::string_view safe, std::size_t margin = 0);
    /// A label at column `margin` and a text at column `margin + labelWidth`, which is broken at blanks. A
    /// label that is too long has a line of its own.
    void labelled(std::string_view label, std::string_view safe, std::size_t labelWidth,
                  std::size_t margin = 0, Ink ink = Ink::plain);

    /// Calls `write` with the first rows of a list, and then names the number of the others.
    template <typename Rows, typename Write>
    void rows(const Rows& list, std::size_t most, Write write) {
        std::size_t written = 0;
        for (const auto& row : list) {
            if (written++ == most) {
                line("  and " + std::to_string(list.size() - most) + " more");
                return;
            }
            write(row);
        }
    }

private:
    std::string broken(std::string_view safe, std::size_t margin) const;

    std::ostream& out;
    TextStyle style;
};

}  // namespace Report
