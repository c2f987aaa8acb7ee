#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "LineSplitter.hpp"
#include "LogReader.hpp"
#include "MemberName.hpp"
#include "Memory.hpp"
#include "Package.hpp"
#include "Utf8Counter.hpp"

namespace Report {

/// Reads the text of a part while it streams by, into the part and the values of its package.
class TextReader {
public:
    /// What the texts of all parts have in common.
    struct Context {
        Budget& budget;
        Memory& memory;
        std::size_t maxLine;
        bool keepAll;  ///< else only small texts are kept, which may be evidence
        std::shared_ptr<const LogForms> forms = nullptr;
    };

    TextReader(Part& partOfText, std::vector<Value>& allValues, TextForm formOfText, const Context& shared);
    ~TextReader();
    TextReader(const TextReader&) = delete;
    TextReader& operator=(const TextReader&) = delete;
    TextReader(TextReader&&) = delete;
    TextReader& operator=(TextReader&&) = delete;

    /// Takes the next piece of the text.
    void add(std::string_view bytes);

    /// Ends the text. `Part::end` must be set.
    void finish();

    /// The limits that left out some of the text.
    const std::set<Limit>& reached() const { return limits; }

private:
    bool isUndecided() const;
    void begin();
    void decide();
    void readLines(std::string_view bytes);
    void keepText(std::string_view bytes);
    bool countText();
    bool reservePrinting(std::string_view bytes);
    void dropText();
    void leaveOut(Limit limit);
    void updateTail(std::string_view bytes);

    Part& part;
    std::vector<Value>& values;
    TextForm form;
    Context context;

    Utf8Counter characters;
    LineSplitter lines;
    std::string undecided;  // the beginning of a text whose form is not known yet
    std::unique_ptr<LineReader> reader;
    const LogReader* logReader = nullptr;  // `reader` of a log
    bool keeping = true;                   // the text
    bool leftOut = false;                  // a limit left out the text and what it holds
    std::size_t keptBytes = 0;
    std::chrono::nanoseconds printing{};
    std::set<Limit> limits;
};

}  // namespace Report
