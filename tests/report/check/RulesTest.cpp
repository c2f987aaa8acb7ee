#include <map>
#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PackageFixture.hpp"
#include "Rule.hpp"
#include "RuleSet.hpp"
#include "ShippedRules.hpp"

namespace Report::Testing {
namespace {

/// A package with a part for each example of the shipped rules.
class Examples {
public:
    explicit Examples(const std::vector<Rule>& rules) {
        for (const Rule& rule : rules) {
            for (const std::string& example : rule.examples) {
                add(rule, example);
            }
            for (const std::string& example : rule.counterexamples) {
                add(rule, example);
            }
        }
        RuleSet().apply(fixture.package, 1000);
    }

    /// Whether the rule finds its example.
    bool isFound(const Rule& rule, const std::string& example) const {
        if (rule.where.front() == sidecarLines) {
            PackageFixture run;
            run.ran("korvel pkg-sup", example + "\n");
            RuleSet().apply(run.package, 1000);
            return hasFinding(run.package, rule.id, "");
        }
        return hasFinding(fixture.package, rule.id, names.at(example));
    }

private:
    void add(const Rule& rule, const std::string& example) {
        std::string& name = names[example];
        if (!name.empty()) {
            return;
        }
        name = "linux/example" + std::to_string(names.size());
        if (rule.value) {
            addValues(name, example);
        } else {
            fixture.write(name, example + "\n");
            fixture.part(name).log = true;
        }
    }

    /// "NAME = NUMBER; NAME = NUMBER"
    void addValues(const std::string& part, std::string_view text) {
        while (!text.empty()) {
            const std::string_view one = text.substr(0, text.find("; "));
            text.remove_prefix(std::min(text.size(), one.size() + 2));
            Value& value = fixture.package.values.emplace_back();
            value.part = part;
            value.name = one.substr(0, one.find(" = "));
            value.text = one.substr(one.find(" = ") + 3);
            value.number = std::stoll(value.text, nullptr, 0);
        }
    }

    static bool hasFinding(const Package& package, const std::string& rule, const std::string& part) {
        return std::ranges::any_of(package.findings, [&](const Finding& finding) {
            return finding.rule == rule && finding.part == part;
        });
    }

    PackageFixture fixture;
    std::map<std::string, std::string> names;  // of parts, by example
};

TEST(ShippedRules, FindTheirExamplesAndNotTheirCounterexamples) {
    std::vector<Rule> rules;
    for (const ShippedRules& shipped : shippedRules()) {
        std::ranges::move(parseRules(std::string(shipped.text), std::string(shipped.file)),
                          std::back_inserter(rules));
    }
    const Examples examples(rules);
    for (const Rule& rule : rules) {
        for (const std::string& example : rule.examples) {
            EXPECT_TRUE(examples.isFound(rule, example)) << rule.id << " does not find: " << example;
        }
        for (const std::string& example : rule.counterexamples) {
            EXPECT_FALSE(examples.isFound(rule, example)) << rule.id << " finds: " << example;
        }
    }
}

}  // namespace
}  // namespace Report::Testing
