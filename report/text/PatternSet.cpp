#include "PatternSet.hpp"

#include <algorithm>

#include <re2/set.h>

#include "TextPattern.hpp"

namespace Report {
namespace {

constexpr std::int64_t setMemory = std::int64_t{8} << 20;  // bytes

RE2::Options setOptions() {
    RE2::Options options(RE2::Quiet);
    options.set_case_sensitive(false);
    options.set_encoding(RE2::Options::EncodingLatin1);
    options.set_max_mem(setMemory);
    return options;
}

}  // namespace

struct PatternSet::Compiled {
    Compiled(std::span<const std::string> expressions, Fit fitOfAll)
        : fit(fitOfAll), set(setOptions(), fitOfAll == Fit::whole ? RE2::ANCHOR_BOTH : RE2::UNANCHORED) {
        for (const std::string& expression : expressions) {
            std::string error;
            if (set.Add(expression, &error) < 0) {
                throw PatternError(error);
            }
        }
        usable = !expressions.empty() && set.Compile();
        texts.assign(expressions.begin(), expressions.end());
    }

    void findOneByOne(std::string_view text, std::vector<std::size_t>& found) {
        for (std::size_t index = single.size(); index < texts.size(); ++index) {
            single.emplace_back(texts[index], TextPattern::Mode::anyCase);
        }
        for (std::size_t index = 0; index < single.size(); ++index) {
            if (fit == Fit::whole ? single[index].fitsWhole(text) : single[index].fits(text)) {
                found.push_back(index);
            }
        }
    }

    Fit fit;
    RE2::Set set;
    bool usable = false;
    std::vector<std::string> texts;
    std::vector<TextPattern> single;  // compiled if the set is of no use
    std::vector<int> indices;
};

PatternSet::PatternSet(std::span<const std::string> expressions, Fit fit)
    : compiled(std::make_unique<Compiled>(expressions, fit)) {
}

PatternSet::PatternSet(PatternSet&&) noexcept = default;
PatternSet& PatternSet::operator=(PatternSet&&) noexcept = default;
PatternSet::~PatternSet() = default;

void PatternSet::find(std::string_view text, std::vector<std::size_t>& found) const {
    found.clear();
    RE2::Set::ErrorInfo error{RE2::Set::kNoError};
    compiled->indices.clear();
    const bool fits =
        compiled->usable && compiled->set.Match({text.data(), text.size()}, &compiled->indices, &error);
    if (!compiled->usable || error.kind != RE2::Set::kNoError) {
        compiled->findOneByOne(text, found);  // the set needs more memory than it has
    } else if (fits) {
        found.assign(compiled->indices.begin(), compiled->indices.end());
        std::ranges::sort(found);
    }
}

}  // namespace Report
