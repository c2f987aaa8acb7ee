#include "Texts.hpp"

#include <algorithm>
#include <ostream>
#include <string>

#include "Phrases.hpp"
#include "Template.hpp"

namespace Report::Html {
namespace {

struct Excerpt {
    std::string head;
    std::string tail;
    std::uint64_t leftOut = 0;  ///< bytes between them
};

/// Removes the rest of a line at the beginning of the last part of a text.
void beginAtLine(std::string& tail) {
    const std::size_t end = tail.find('\n');
    if (end != std::string::npos) {
        tail.erase(0, end + 1);
    }
}

void endAtLine(std::string& head) {
    const std::size_t end = head.rfind('\n');
    if (end != std::string::npos) {
        head.resize(end);
    }
}

std::string lastBytes(const PackedText& text, std::size_t most) {
    std::string last;
    text.read([&](std::string_view piece) {
        last += piece.substr(piece.size() - std::min(piece.size(), most));
        if (last.size() > 4 * most) {
            last.erase(0, last.size() - most);
        }
        return true;
    });
    last.erase(0, last.size() - std::min(last.size(), most));
    return last;
}

Excerpt excerptOf(const PackedText& text, std::uint64_t most) {
    if (text.size() <= most) {
        return {text.head(text.size()), {}, 0};
    }
    const std::size_t half = std::max<std::size_t>(most / 2, 64);
    Excerpt excerpt{text.head(half), lastBytes(text, half), 0};
    endAtLine(excerpt.head);
    beginAtLine(excerpt.tail);
    excerpt.leftOut = text.size() - excerpt.head.size() - excerpt.tail.size();
    return excerpt;
}

/// A CR at the end of a line says nothing to a reader of the page.
std::string withoutCarriageReturns(std::string text) {
    std::size_t place = 0;
    while ((place = text.find("\r\n", place)) != std::string::npos) {
        text.erase(place, 1);
    }
    return text;
}

void writeText(std::ostream& out, const View& view, std::size_t index, std::uint64_t most) {
    const Part& part = view->parts[index];
    Excerpt excerpt = excerptOf(part.text, most);
    std::string about = sizeText(part.text.size());
    if (part.invalidBytes > 0) {
        about += ", " + counted(part.invalidBytes, "byte is", "bytes are") + " not UTF-8";
    }
    if (part.otherLines > 0) {
        about += ", " + counted(part.otherLines, "line of another form", "lines of another form");
    }
    fill(out, "text",
         Fields{}
             .set("name", shortened(part.name, 300))
             .set("about", about)
             .set("target", textId(view, index))
             .set("head", withoutCarriageReturns(std::move(excerpt.head)))
             .set("gap",
                  excerpt.leftOut == 0 ? std::string{} : sizeText(excerpt.leftOut) + " are left out here.")
             .set("tail", withoutCarriageReturns(std::move(excerpt.tail))));
}

}  // namespace

std::uint64_t shareOfTexts(const std::vector<View>& views, std::uint64_t bytes) {
    std::vector<std::uint64_t> sizes;
    forEachView(views, [&](const View& view) {
        for (const Part& part : view->parts) {
            sizes.push_back(part.text.size());
        }
    });
    std::ranges::sort(sizes);
    std::size_t left = sizes.size();
    for (const std::uint64_t size : sizes) {
        if (size > bytes / left) {
            return bytes / left;
        }
        bytes -= size;
        --left;
    }
    return sizes.empty() ? 0 : sizes.back();
}

void writeTexts(std::ostream& out, const View& view, std::uint64_t most) {
    const auto& parts = view->parts;
    if (std::ranges::none_of(parts, hasText)) {
        return;
    }
    const bool cut = std::ranges::any_of(parts, [&](const Part& part) { return part.text.size() > most; });
    fill(out, "texts-begin",
         Fields{}
             .set("id", view.id)
             .set("level", levelText(view.level))
             .set("note", cut ? "Of each long text, this page holds the first and the last " +
                                    sizeText(most / 2) + "."
                              : std::string{}));
    for (const std::size_t index : partsByName(*view.package)) {
        if (hasText(parts[index])) {
            writeText(out, view, index, most);
        }
    }
    out << "</section>\n";
}

}  // namespace Report::Html
