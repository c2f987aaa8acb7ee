#include <algorithm>
#include <chrono>
#include <cstddef>
#include <ostream>
#include <utility>
#include <vector>

#include "HistoryRenderers.hpp"
#include "HistoryWords.hpp"
#include "PageFrame.hpp"
#include "Phrases.hpp"
#include "PlotData.hpp"
#include "Sections.hpp"
#include "Template.hpp"

namespace Report {
namespace Html {
namespace {

constexpr std::size_t longestName = 200;  // bytes
constexpr std::size_t longestCourse = 24;
constexpr std::size_t mostColumns = 12;

/// The courses of a board, with what is usual on all boards if that is known.
struct Section {
    std::string board;
    std::string summary;
    std::vector<std::pair<const Course*, const Outlier*>> courses;
};

std::string idOf(std::size_t section) {
    return "board-" + std::to_string(section + 1);
}

std::string textOf(std::int64_t seconds) {
    return timeText(Time(std::chrono::seconds(seconds)));
}

/// The times of all courses of a section: a value can be missing in a package.
std::vector<std::int64_t> timesOf(const Section& section) {
    std::vector<std::int64_t> times;
    for (const auto& [course, outlier] : section.courses) {
        for (const Point& point : course->points) {
            times.push_back(point.time);
        }
    }
    std::sort(times.begin(), times.end());
    times.erase(std::unique(times.begin(), times.end()), times.end());
    return times;
}

/// The last point at a time, or null.
const Point* pointAt(const Course& course, std::int64_t time) {
    const auto behind =
        std::upper_bound(course.points.begin(), course.points.end(), time,
                         [](std::int64_t wanted, const Point& point) { return wanted < point.time; });
    return behind != course.points.begin() && std::prev(behind)->time == time ? &*std::prev(behind) : nullptr;
}

PlotSection plotsOf(const Section& section, std::size_t index) {
    const std::vector<std::int64_t> times = timesOf(section);
    PlotSection plots{idOf(index), {times.begin(), times.end()}, {}};
    for (const auto& [course, outlier] : section.courses) {
        Plot& plot = plots.plots.emplace_back();
        plot.part = shortened(course->name.part, longestName);
        plot.name = shortened(course->name.name, longestName);
        PlotLine& line = plot.lines.emplace_back();
        line.label = outlier == nullptr ? "" : shortened(course->board, longestName);
        for (const std::int64_t time : times) {
            const Point* const point = pointAt(*course, time);
            line.numbers.push_back(point == nullptr ? Number() : Number(point->number));
        }
        if (outlier != nullptr) {
            plot.lines.push_back({"usual now", std::vector<Number>(times.size(), outlier->levels.median)});
        }
    }
    return plots;
}

Rows tableRows(const Section& section, const std::vector<std::int64_t>& times) {
    Rows rows;
    for (const auto& [course, outlier] : section.courses) {
        Rows cells;
        for (const std::int64_t time : times) {
            const Point* const point = pointAt(*course, time);
            cells.push_back(Fields{}.set("text", point == nullptr ? "" : numberText(point->number)));
        }
        rows.push_back(Fields{}
                           .set("part", shortened(course->name.part, longestName))
                           .set("name", shortened(course->name.name, longestName))
                           .set("cells", std::move(cells)));
    }
    return rows;
}

void writeSection(std::ostream& out, const Section& section, std::size_t index, std::size_t leftOut) {
    const std::vector<std::int64_t> all = timesOf(section);
    std::vector<std::int64_t> times;
    Rows columns;
    for (const std::size_t place : evenPlaces(all.size(), mostColumns)) {
        times.push_back(all[place]);
        columns.push_back(Fields{}.set("time", textOf(all[place])));
    }
    fill(out, "trend",
         Fields{}
             .set("id", idOf(index))
             .set("heading", "Values of " + shortened(section.board, longestName))
             .set("board", shortened(section.board, longestName))
             .set("summary", section.summary)
             .set("any", !section.courses.empty())
             .set("count", grouped(section.courses.size()))
             .set("columns", std::move(columns))
             .set("rows", tableRows(section, times))
             .set("leftOut", leftOutNote(leftOut, "value")));
}

/// The sections in the order of their first outlier.
std::vector<Section> sectionsOf(const FleetTrend& trend) {
    std::vector<Section> sections;
    for (const Outlier& outlier : trend.outliers) {
        auto section = std::find_if(sections.begin(), sections.end(), [&](const Section& known) {
            return known.board == outlier.course.board;
        });
        if (section == sections.end()) {
            section = sections.insert(sections.end(), {outlier.course.board, "", {}});
        }
        section->courses.emplace_back(&outlier.course, &outlier);
    }
    for (Section& section : sections) {
        section.summary = counted(section.courses.size(), "value") +
                          (section.courses.size() == 1 ? " stands out." : " stand out.");
    }
    return sections;
}

void writeOutliers(std::ostream& out, const FleetTrend& trend, const std::vector<Section>& sections) {
    Rows rows;
    for (const Outlier& outlier : trend.outliers) {
        const Course& course = outlier.course;
        const auto section = std::find_if(sections.begin(), sections.end(),
                                          [&](const Section& known) { return known.board == course.board; });
        rows.push_back(Fields{}
                           .set("target", idOf(static_cast<std::size_t>(section - sections.begin())))
                           .set("board", shortened(course.board, longestName))
                           .set("name", shortened(nameText(course.name), longestName))
                           .set("score", scoreText(outlier.score()))
                           .set("now", numberText(course.points.back().number))
                           .set("usualNow", numberText(outlier.levels.median))
                           .set("perHour", hourlyText(course.perHour))
                           .set("usualPerHour", hourlyText(outlier.rates.median))
                           .set("course", sparkline(course.points, longestCourse)));
    }
    fill(out, "outliers",
         Fields{}
             .set("lead",
                  "The score says how far a number, or its growth, is from the median of all boards, in "
                  "units of the usual distance.")
             .set("rows", std::move(rows))
             .set("leftOut", leftOutNote(trend.leftOut, "value")));
}

Fields topOf(const HistoryHead& head, const std::string& heading, const std::string& conclusion,
             std::size_t outliers) {
    Rows facts{fact("Store", head.store), fact("Time", periodText(head.summary)),
               fact("Verdicts", verdictsText(head.summary))};
    if (const std::string leftOut = leftOutText(head.summary); !leftOut.empty()) {
        facts.push_back(fact("Left out", leftOut));
    }
    return Fields{}
        .set("heading", heading)
        .set("verdict", outliers == 0 ? "nothing stands out" : counted(outliers, "outlier"))
        .set("tone", outliers == 0 ? "calm" : "warn")
        .set("sentence", conclusion)
        .set("facts", std::move(facts));
}

Rows contentsOf(const std::vector<Section>& sections) {
    Rows rows;
    for (std::size_t index = 0; index < sections.size(); ++index) {
        rows.push_back(Fields{}
                           .set("target", idOf(index))
                           .set("text", shortened(sections[index].board, 60))
                           .set("count", grouped(sections[index].courses.size()))
                           .set("tone", "calm"));
    }
    return rows;
}

void writeEnd(std::ostream& out, const std::vector<Section>& sections) {
    writePageFooter(out, "the store named above");
    std::vector<PlotSection> plots;
    for (std::size_t index = 0; index < sections.size(); ++index) {
        plots.push_back(plotsOf(sections[index], index));
    }
    writePlotData(out, plots);
    writePageEnd(out, Script::pageWithPlots);
}

}  // namespace
}  // namespace Html

void renderTrendPage(std::ostream& out, const HistoryHead& head, const FleetTrend& trend) {
    using namespace Html;
    const std::string heading = scopeText(head.summary, nullptr);
    const std::vector<Section> sections = sectionsOf(trend);
    writePageHead(out, heading, Script::pageWithPlots);
    Rows contents = contentsOf(sections);
    if (!trend.outliers.empty()) {
        contents.insert(contents.begin(), Fields{}
                                              .set("target", "outliers")
                                              .set("text", "Values that stand out")
                                              .set("count", grouped(trend.outliers.size()))
                                              .set("tone", "warn"));
    }
    fill(out, "top",
         topOf(head, heading, conclusionText(trend, head.summary), trend.outliers.size() + trend.leftOut)
             .set("entries", std::move(contents)));
    if (!trend.outliers.empty()) {
        writeOutliers(out, trend, sections);
    }
    for (std::size_t index = 0; index < sections.size(); ++index) {
        writeSection(out, sections[index], index, 0);
    }
    writeEnd(out, sections);
}

void renderTrendPage(std::ostream& out, const HistoryHead& head, const std::string& board,
                     const BoardTrend& trend) {
    using namespace Html;
    const std::string shown = shortened(board, longestName);
    const std::string heading = scopeText(head.summary, &shown);
    Section section{board, conclusionText(trend), {}};
    for (const Course& course : trend.changed) {
        section.courses.emplace_back(&course, nullptr);
    }
    const std::vector<Section> sections{std::move(section)};
    writePageHead(out, heading, Script::pageWithPlots);
    fill(out, "top", topOf(head, heading, conclusionText(trend), 0).set("entries", contentsOf(sections)));
    writeSection(out, sections.front(), 0, trend.leftOut);
    writeEnd(out, sections);
}

}  // namespace Report
