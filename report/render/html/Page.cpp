#include <algorithm>
#include <map>
#include <ostream>
#include <string>
#include <utility>

#include "Data.hpp"
#include "Differences.hpp"
#include "Names.hpp"
#include "PageFrame.hpp"
#include "Phrases.hpp"
#include "Renderers.hpp"
#include "Sections.hpp"
#include "Template.hpp"
#include "Texts.hpp"
#include "Timeline.hpp"
#include "Trend.hpp"
#include "View.hpp"

namespace Report {
namespace Html {
namespace {

// What the entries and the texts of one package may use on the page, in bytes. Several packages together may
// use as much as three.
constexpr std::size_t timelineBytes = std::size_t{1} << 20;
constexpr std::size_t textBytes = std::size_t{512} << 10;
constexpr std::size_t mostShares = 3;

/// Everything that a page shows. Its sections are written one by one, so that a page is never in memory as a
/// whole.
struct Page {
    std::ostream& out;
    const RuleSet& rules;
    std::size_t maxLine;
    std::vector<View> views;
    Timeline timeline;
    std::vector<Trend> trends;
    std::uint64_t textShare;

    Script script() const { return trends.empty() ? Script::page : Script::pageWithPlots; }
};

Fields contentsLink(std::string target, std::string text, std::uint64_t count,
                    std::string_view tone = "calm") {
    return Fields{}
        .set("target", std::move(target))
        .set("text", std::move(text))
        .set("count", count == 0 ? std::string{} : grouped(count))
        .set("tone", tone);
}

Fields timelineLink(const Page& page) {
    return contentsLink("timeline", "Timeline", page.timeline.all);
}

void writeHead(const Page& page, const std::string& title) {
    writePageHead(page.out, title, page.script());
}

void writeBottom(const Page& page) {
    writePageFooter(page.out, "the packages named above");
    writeTimelineData(page.out, page.timeline);
    if (!page.trends.empty()) {
        writeTrendData(page.out, page.trends);
    }
    writePageEnd(page.out, page.script());
}

void writeNested(const Page& page, const View& view);

void writeConclusions(const Page& page, const View& view) {
    writeFindings(page.out, view);
    writeParts(page.out, view);
}

void writeContents(const Page& page, const View& view) {
    writePools(page.out, view);
    writeValues(page.out, view, page.rules);
    writeFreshness(page.out, view);
    writeRun(page.out, view);
    writeNested(page, view);
    writeIrregular(page.out, view);
    writeTexts(page.out, view, page.textShare);
}

void writeFolded(const Page& page, const View& view) {
    Fields fields = headlineOf(view);
    fields.set("id", view.id)
        .set("level", levelText(view.level - 1))
        .set("heading", shortened(view.label, 500));
    fill(page.out, "package-begin", fields);
    writeConclusions(page, view);
    writeContents(page, view);
    page.out << "</div>\n</details>\n";
}

void writeNested(const Page& page, const View& view) {
    if (view.nested.empty() && view.nestedLeftOut == 0) {
        return;
    }
    fill(page.out, "nested-begin",
         Fields{}
             .set("id", view.id)
             .set("level", levelText(view.level))
             .set("leftOut", leftOutNote(view.nestedLeftOut, "package")));
    for (const View& nested : view.nested) {
        writeFolded(page, nested);
    }
    page.out << "</section>\n";
}

void writeSingle(const Page& page) {
    const View& view = page.views.front();
    const std::string heading = view->board ? "Package of " + shortened(*view->board, 100)
                                            : "Package " + shortened(fileName(*view.package), 100);
    writeHead(page, heading + (view->time ? ", " + timeText(view->time) : ""));
    Rows contents = contentsOf(view);
    contents.insert(contents.begin() + 2, timelineLink(page));  // after findings and parts
    Fields top = headlineOf(view, {fact("Log entries", grouped(page.timeline.all)),
                                   fact("Values", grouped(view->values.size()))});
    top.set("heading", heading).set("entries", std::move(contents));
    fill(page.out, "top", top);
    writeConclusions(page, view);
    writeTimeline(page.out, page.timeline);
    writeContents(page, view);
}

Rows packageRows(const Page& page) {
    Rows rows;
    for (const View& view : page.views) {
        const auto severe = [&](Severity severity) {
            return grouped(
                static_cast<std::uint64_t>(std::ranges::count(view->findings, severity, &Finding::severity)));
        };
        rows.push_back(Fields{}
                           .set("number", std::to_string(rows.size() + 1))
                           .set("target", view.id)
                           .set("source", shortened(fileName(*view.package), 300))
                           .set("verdict", nameOf(view->verdict))
                           .set("tone", toneOf(view->verdict))
                           .set("board", view->board ? shortened(*view->board, 100) : "unknown")
                           .set("time", timeText(view->time))
                           .set("kind", kindFact(*view.package))
                           .set("parts", partsFact(*view.package))
                           .set("errors", severe(Severity::error))
                           .set("warnings", severe(Severity::warning)));
    }
    return rows;
}

/// The heading of several packages: "3 packages of lab-17", or "3 packages of 2 boards".
std::string headingOfSeveral(const std::vector<View>& views) {
    std::map<std::string, std::size_t> boards;
    for (const View& view : views) {
        ++boards[view->board.value_or("an unknown board")];
    }
    return counted(views.size(), "package") + " of " +
           (boards.size() == 1 ? shortened(boards.begin()->first, 100) : counted(boards.size(), "board"));
}

Fields topOfSeveral(const Page& page) {
    std::map<Verdict, std::size_t> verdicts;
    for (const View& view : page.views) {
        ++verdicts[view->verdict];
    }
    Rows facts;
    for (const auto& [verdict, count] : verdicts) {
        facts.push_back(fact(std::string{nameOf(verdict)}, counted(count, "package")));
    }
    facts.push_back(fact("Log entries", grouped(page.timeline.all)));
    const Verdict worst = verdicts.rbegin()->first;
    const std::size_t whole = verdicts[Verdict::whole];
    return Fields{}
        .set("verdict", nameOf(worst))
        .set("tone", toneOf(worst))
        .set("sentence", worst == Verdict::whole ? std::string{"All packages are whole."}
                                                 : grouped(whole) + " of " +
                                                       counted(page.views.size(), "package") + " are whole.")
        .set("facts", std::move(facts));
}

Rows contentsOfSeveral(const Page& page, const Neighbours& neighbours) {
    Rows rows{contentsLink("packages", "Packages", page.views.size())};
    for (std::size_t index = 0; index < page.trends.size(); ++index) {
        rows.push_back(contentsLink(trendId(index + 1), trendHeading(page.trends, index), 0));
    }
    if (!neighbours.empty()) {
        rows.push_back(contentsLink("differences", "Differences", neighbours.size()));
    }
    rows.push_back(timelineLink(page));
    for (const View& view : page.views) {
        rows.push_back(contentsLink(view.id, shortened(view.label, 60), 0));
    }
    return rows;
}

void writeSeveral(const Page& page) {
    const std::string heading = headingOfSeveral(page.views);
    const Neighbours neighbours = neighboursOf(page.trends);
    writeHead(page, heading);
    Fields top = topOfSeveral(page);
    top.set("heading", heading).set("entries", contentsOfSeveral(page, neighbours));
    fill(page.out, "top", top);
    fill(page.out, "packages", Fields{}.set("rows", packageRows(page)));
    for (std::size_t index = 0; index < page.trends.size(); ++index) {
        writeTrend(page.out, page.trends, index);
    }
    writeDifferences(page.out, neighbours, page.maxLine);
    writeTimeline(page.out, page.timeline);
    for (const View& view : page.views) {
        writeFolded(page, view);
    }
}

}  // namespace
}  // namespace Html

void renderHtml(std::ostream& out, std::span<const Package> packages, const RuleSet& rules,
                std::size_t maxLine) {
    using namespace Html;
    const std::size_t shares = std::min(packages.size(), mostShares);
    std::vector<View> views = viewsOf(packages);
    Timeline timeline = timelineOf(views, maxLine, shares * timelineBytes);
    const std::uint64_t textShare = shareOfTexts(views, shares * textBytes);
    Page page{out, rules, maxLine, std::move(views), std::move(timeline), {}, textShare};
    page.trends = trendsOf(page.views, rules);
    if (packages.size() == 1) {
        writeSingle(page);
    } else {
        writeSeveral(page);
    }
    writeBottom(page);
}

}  // namespace Report
