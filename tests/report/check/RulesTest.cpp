#include <algorithm>
#include <chrono>
#include <cstdint>
#include <iterator>
#include <map>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CauseTexts.hpp"
#include "EntryParser.hpp"
#include "Judge.hpp"
#include "LogForms.hpp"
#include "Names.hpp"
#include "PackageFixture.hpp"
#include "PartTable.hpp"
#include "Rule.hpp"
#include "RuleSet.hpp"
#include "ShippedRules.hpp"
#include "Zone.hpp"

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
        const std::string& where = rule.where.front();
        if (where == sidecarLines) {
            PackageFixture run;
            run.ran("korvel pkg-sup", example + "\n");
            RuleSet().apply(run.package, 1000);
            return hasFinding(run.package, rule.id, "");
        }
        if (isPartName(where)) {
            PackageFixture one;
            one.write(where, example + "\n");
            RuleSet().apply(one.package, 1000);
            return hasFinding(one.package, rule.id, where);
        }
        return hasFinding(fixture.package, rule.id, names.at(keyOf(rule, example)));
    }

private:
    static bool isPartName(const std::string& where) {
        return where.find('/') != std::string::npos && where.find('*') == std::string::npos;
    }

    /// Rules for the same place share their examples.
    static std::string keyOf(const Rule& rule, const std::string& example) {
        return rule.where.front() + '\n' + example;
    }

    void add(const Rule& rule, const std::string& example) {
        std::string& name = names[keyOf(rule, example)];
        if (!name.empty()) {
            return;
        }
        const std::string& where = rule.where.front();
        const std::string folder = where.ends_with("/*") ? where.substr(0, where.find('/')) : "linux";
        name = folder + "/example" + std::to_string(names.size());
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
    std::map<std::string, std::string> names;  // of parts, by place and example
};

RuleFile shipped() {
    RuleFile all;
    for (const ShippedRules& file : shippedRules()) {
        RuleFile parsed = parseRules(std::string(file.text), std::string(file.file));
        std::ranges::move(parsed.rules, std::back_inserter(all.rules));
        std::ranges::move(parsed.forms, std::back_inserter(all.forms));
    }
    return all;
}

TEST(ShippedRules, FindTheirExamplesAndNotTheirCounterexamples) {
    const std::vector<Rule> rules = shipped().rules;
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

TEST(ShippedForms, FitTheirExamplesAndNotTheirCounterexamples) {
    for (const FormRule& form : shipped().forms) {
        LogForms forms;
        forms.add(form.pattern, form.levels);
        for (const std::string& example : form.examples) {
            EXPECT_TRUE(startsEntry(example, &forms)) << form.id << " does not fit: " << example;
        }
        for (const std::string& example : form.counterexamples) {
            EXPECT_FALSE(startsEntry(example, &forms)) << form.id << " fits: " << example;
        }
    }
}

TEST(ShippedForms, TellTimeLevelAndTag) {
    const EntryParser parser(Zone::find("+02:00").value(), std::nullopt, RuleSet().logForms());
    const Time time = std::chrono::sys_days(std::chrono::year(2026) / 11 / 22) + std::chrono::seconds(10'000);
    const struct {
        const char* line;
        LogEntry entry;
    } cases[] = {
        {"2026-11-22 04:46:40,000 ERROR resmgr: no room", {time, Level::error, "resmgr", "no room"}},
        {"[2026-11-22T02:46:40Z] [Warning] link down", {time, Level::warning, "", "link down"}},
        {"2026-11-22 03:46:40+01:00 <I> a[7]: b", {time, Level::information, "a[7]", "b"}},
        {"2026-11-22 04:46:40 resmgr: started", {time, std::nullopt, "resmgr", "started"}},
        {"1795315600 netfp_server: started", {time, std::nullopt, "netfp_server", "started"}},
    };
    for (const auto& [line, entry] : cases) {
        LogEntry parsed;
        EXPECT_TRUE(parser.parse(line, parsed)) << line;
        EXPECT_EQ(parsed, entry) << line;
    }
}

/// The rule and the part of each finding, with its count and its evidence.
std::string applied(const RuleSet& rules, PackageFixture& fixture) {
    judge(fixture.package, {});
    rules.apply(fixture.package, 1000);
    std::string text;
    for (const Finding& finding : fixture.package.findings) {
        text += std::string(nameOf(finding.severity)) + " " + finding.rule + " in '" + finding.part + "', " +
                std::to_string(finding.count) + ":\n";
        for (const Evidence& evidence : finding.evidence) {
            text += "  " + evidence.source + ": " + evidence.text + "\n";
        }
    }
    return text;
}

/// A set of only these rules. The shipped ones have no package to find anything in.
RuleSet rulesOf(const std::string& text) {
    RuleSet rules;
    rules.add(text, "own.toml");
    return rules;
}

constexpr const char* texts = "meaning = 'm'\nadvice = 'a'\n";

TEST(RuleSet, RefusesAWrongFileWithLineAndReason) {
    const std::string rule = std::string("[[rule]]\nid = 'x'\nwhere = 'logs'\nseverity = 'note'\n") + texts;
    const std::string form = "[[form]]\nid = 'x'\n";
    const struct {
        std::string text;
        std::string message;
    } cases[] = {
        {"[[rule]\n", "own.toml:1: "},
        {"rules = 1\n", "own.toml:1: 'rules' is not a list of tables [[rule]] or [[form]]"},
        {"rule = [1]\n", "own.toml:1: 'rule' is not a list of tables [[rule]] or [[form]]"},
        {"\n[[rule]]\nid = 'x'\n",
         "own.toml:2: one of the keys pattern, value, state, fact and level is missing"},
        {"[[rule]]\npattern = 'p'\n", "own.toml:1: the key 'id' is missing"},
        {"[[rule]]\nid = 7\npattern = 'p'\n", "own.toml:2: 'id' must be a text"},
        {rule + "pattern = 'p'\ncolour = 'red'\n", "own.toml:8: 'colour' is no key of a rule with 'pattern'"},
        {rule + "pattern = 'p'\nis = '> 0'\n", "own.toml:8: 'is' is no key of a rule with 'pattern'"},
        {rule + "pattern = '('\n", "own.toml:7: 'pattern' is no pattern: missing ): ("},
        {rule + "pattern = 'p'\nexcept = 'a**'\n",
         "own.toml:8: 'except' is no pattern: bad repetition operator: **"},
        {rule + "pattern = 'p'\nlevel = 'loud'\n", "own.toml:8: 'level' cannot be 'loud'"},
        {rule + "value = 'p'\nis = 'many'\n", "own.toml:8: 'is' cannot be 'many'"},
        {rule + "value = 'p'\n", "own.toml:1: the key 'is' is missing"},
        {rule + "value = 'p'\nis = '> 9 %'\n",
         "own.toml:8: 'of' belongs to a comparison in %, and only to one"},
        {rule + "value = 'p'\nis = '> 9'\nof = 'q'\n",
         "own.toml:8: 'of' belongs to a comparison in %, and only to one"},
        {rule + "value = '(p)'\nis = '> 9 %'\nof = ['q', '\\2']\n",
         "own.toml:9: 'value' does not have the groups of '\\2'"},
        {rule + "state = 'fine'\n", "own.toml:7: 'state' cannot be 'fine'"},
        {rule + "fact = ['overlap', 'fine']\n", "own.toml:7: 'fact' cannot be 'fine'"},
        {rule + "pattern = 'p'\nexamples = [1]\n",
         "own.toml:8: 'examples' must be a text or a list of texts"},
        {rule + "pattern = 'p'\n" + rule + "pattern = 'p'\n", "own.toml:8: the rule 'x' appears twice"},
        {"[[rule]]\nid = 'x'\nwhere = []\nlevel = 'error'\nseverity = 'note'\n",
         "own.toml:3: 'where' must be a text or a list of texts"},
        {"[[rule]]\nid = 'x'\nlevel = 'error'\nseverity = 'note'\n",
         "own.toml:1: the key 'where' is missing"},
        {"[[rule]]\nid = 'x'\nwhere = 'logs'\nlevel = 'error'\nseverity = 'bad'\n",
         "own.toml:5: 'severity' cannot be 'bad'"},
        {form + "colour = 'red'\n", "own.toml:3: 'colour' is no key of a form"},
        {form + "pattern = 'p'\nlevels = 3\n", "own.toml:4: 'levels' must be a table of words and levels"},
        {form + "pattern = 'p'\nlevels = {warn = 'loud'}\n", "own.toml:4: 'warn' cannot be 'loud'"},
        {form + "pattern = 'p'\n",
         "own.toml:3: 'pattern' is no form of log lines: the groups `time` and `text` are needed"},
    };
    for (const auto& [text, message] : cases) {
        SCOPED_TRACE(text);
        RuleSet rules;
        const std::size_t before = rules.identifiers().size();
        try {
            rules.add(text, "own.toml");
            ADD_FAILURE() << "accepted";
        } catch (const RuleError& error) {
            EXPECT_THAT(error.what(), testing::StartsWith(message));
        }
        EXPECT_EQ(rules.identifiers().size(), before);
    }
}

TEST(RuleSet, ReplacesAShippedRuleByOneWithItsName) {
    const std::size_t shipped = RuleSet().identifiers().size();
    const RuleSet rules =
        rulesOf(std::string("[[rule]]\nid = 'heartbeat-lost'\nwhere = ['mmi/**', 'fuse/*']\n"
                            "severity = 'note'\npattern = 'pulse'\nexcept = 'no pulse'\n") +
                texts);
    EXPECT_EQ(rules.identifiers().size(), shipped);
    EXPECT_EQ(rules.explain("heartbeat-lost"),
              "heartbeat-lost (note)\n"
              "Meaning:  m\n"
              "Advice:   a\n"
              "Finds:    lines that match pulse, without what matches no pulse\n"
              "Where:    mmi/**, fuse/*\n"
              "File:     own.toml\n");
    EXPECT_EQ(rules.explain("unheard-of"), "");
}

TEST(RuleSet, ExplainsEveryKindOfRule) {
    const RuleSet rules;
    const struct {
        const char* rule;
        const char* finds;
    } cases[] = {
        {"error-entries", "Finds:    log entries of the level error or worse\n"},
        {"last-error", "Finds:    values != 0 with a name that matches last[ _-]?"},
        {"nearly-used-up", "Finds:    values >= 90 % of \\1 in all, \\1 total, "},
        {"process-died", "Finds:    parts in state `cut` whose cause matches `died while`\n"},
        {"package-not-fully-read", "Finds:    packages with the verdict `not fully read`\n"},
        {"log-overlap", "Finds:    the fact `overlap`\n"},
        {"log-overlap", "File:     packages.toml (shipped with korvel-report)\n"},
    };
    for (const auto& [rule, finds] : cases) {
        EXPECT_THAT(rules.explain(rule), testing::HasSubstr(finds));
    }
}

TEST(RuleSet, CountsForEachRuleAndPartAndKeepsTheFirstEvidence) {
    PackageFixture fixture;
    fixture.package.sidecarState = SidecarState::used;
    fixture.write("fuse/HistoryLog",
                  "2026-09-21T14:13:16.000000Z 2 a: disk is full\n"
                  "2026-09-21T14:13:17.000000Z 2 a: disk is full again\n"
                  "2026-09-21T14:13:18.000000Z 2 a: No space left on device\n"
                  "2026-09-21T14:13:19.000000Z 2 a: no space left for the fourth time\n");
    fixture.part("fuse/HistoryLog").log = true;
    fixture.write("linux/dmesg", "[  1.2] EXT4-fs: no space left\n");

    EXPECT_EQ(applied(RuleSet(), fixture),
              "error disk-full in 'fuse/HistoryLog', 4:\n"
              "  fuse/HistoryLog: 2026-09-21T14:13:16.000000Z 2 a: disk is full\n"
              "  fuse/HistoryLog: 2026-09-21T14:13:17.000000Z 2 a: disk is full again\n"
              "  fuse/HistoryLog: 2026-09-21T14:13:18.000000Z 2 a: No space left on device\n"
              "error disk-full in 'linux/dmesg', 1:\n"
              "  linux/dmesg: [  1.2] EXT4-fs: no space left\n");
}

TEST(RuleSet, NamesTheTotalOfAShare) {
    const auto nameAndNumber = [](const char* name, std::int64_t number) {
        return Value{"mmi/sfn/HeapStats", "heap", name, 1, number, std::to_string(number)};
    };
    PackageFixture fixture;
    fixture.package.sidecarState = SidecarState::used;
    fixture.package.values = {nameAndNumber("bytes in use", 95), nameAndNumber("bytes in all", 100)};

    EXPECT_EQ(applied(RuleSet(), fixture),
              "warning nearly-used-up in 'mmi/sfn/HeapStats', 1:\n"
              "  mmi/sfn/HeapStats: heap / bytes in use = 95 of 100 (bytes in all)\n");
}

TEST(RuleSet, SortsFindingsBySeverity) {
    PackageFixture fixture;
    fixture.write("linux/messages", "timer expired\nwatchdog expired\nrestarting because of a new version\n");

    EXPECT_EQ(applied(RuleSet(), fixture),
              "error watchdog in 'linux/messages', 1:\n"
              "  linux/messages: watchdog expired\n"
              "warning time-out in 'linux/messages', 1:\n"
              "  linux/messages: timer expired\n"
              "note sidecar-absent in '', 1:\n"
              "note unexpected-restart in 'linux/messages', 1:\n"
              "  linux/messages: restarting because of a new version\n");
}

TEST(RuleSet, FindsStatesWithTheirEvidence) {
    PackageFixture fixture;
    fixture.remove("ti/netfp_proxy");
    fixture.kill("netfp_proxy");

    EXPECT_EQ(applied(RuleSet(), fixture),
              "error process-not-running in 'ti/netfp_proxy', 1:\n"
              "  ti/netfp_proxy: missing: netfp_proxy was not running\n"
              "  linux/processes: no process netfp_proxy among 7\n"
              "note sidecar-absent in '', 1:\n");
}

TEST(ShippedRules, HaveOneRuleForEachStateAndCause) {
    const struct {
        Cause cause;
        State state;
        const char* part;
        const char* rule;
    } cases[] = {
        {Cause::packageEndsInside, State::cut, "mmi/sfn/HeapStats", "part-beyond-end"},
        {Cause::packageEndsBefore, State::missing, "ti/netfp_proxy", "part-beyond-end"},
        {Cause::packageDamaged, State::missing, "ti/netfp_proxy", "part-beyond-end"},
        {Cause::notFollowed, State::missing, "ti/netfp_proxy", "part-not-followed"},
        {Cause::noRoom, State::empty, "mmi/sfn/HeapStats", "no-room"},
        {Cause::noRoom, State::cut, "fuse/HistoryLog", "no-room"},
        {Cause::notWritten, State::empty, "mmi/sfn/HeapStats", "not-written"},
        {Cause::folderNotCreated, State::missing, "mmi/sfn/HeapStats", "not-written"},
        {Cause::stateFileMissing, State::missing, "fuse/sfn/dmaStats", "state-file-missing"},
        {Cause::stateFileEmpty, State::empty, "fuse/sfn/dmaStats", "state-file-missing"},
        {Cause::bridgeFileMissing, State::missing, "fuse/iwf/fpBridgeStats", "state-file-missing"},
        {Cause::logMissing, State::missing, "fuse/HistoryLog", "not-collected"},
        {Cause::nothingLoggedOrNoRoom, State::empty, "ti/syslib_sm_log", "log-perhaps-lost"},
        {Cause::sourceUnreadable, State::missing, "ti/netfp_proxy", "source-unreadable"},
        {Cause::sourceHangs, State::missing, "fuse/sfn/dmaStats", "dispatcher-hangs"},
        {Cause::sourceLimit, State::cut, "ti/netfp_proxy", "collection-limit"},
        {Cause::collectionLimit, State::empty, "ti/netfp_proxy", "collection-limit"},
        {Cause::replyNotEnded, State::cut, "mmi/sfn/HeapStats", "reply-unended"},
        {Cause::replyStopped, State::cut, "mmi/sfn/HeapStats", "reply-unended"},
        {Cause::replyLate, State::stale, "mmi/sfn/HeapStats", "dispatcher-slow"},
        {Cause::notText, State::unreadable, "mmi/sfn/HeapStats", "part-damaged"},
        {Cause::noAnswer, State::empty, "mmi/sfn/HeapStats", "dispatcher-silent"},
        {Cause::noAnswerOrNoRoom, State::empty, "mmi/sfn/HeapStats", "dispatcher-silent"},
        {Cause::noAnswerNotRunning, State::empty, "mmi/sfn/HeapStats", "dispatcher-not-running"},
        {Cause::answeredNothing, State::empty, "mmi/sfn/HeapStats", "dispatcher-silent"},
        {Cause::notAskable, State::empty, "mmi/sfn/HeapStats", "dispatcher-silent"},
        {Cause::dispatcherNotRunning, State::missing, "fuse/sfn/dmaStats", "dispatcher-not-running"},
        {Cause::notAsked, State::missing, "mmi/sfn/HeapStats", "not-collected"},
        {Cause::notAskedOrPrinted, State::missing, "ti/syslib_sm_log", "not-collected"},
        {Cause::removedByPrint, State::missing, "ti/netfp_proxy", "not-collected"},
        {Cause::dumpMissing, State::missing, "ti/netfp_proxy", "dump-missing"},
        {Cause::dumpNotWritten, State::missing, "ti/netfp_proxy", "process-hangs"},
        {Cause::dumpNotFinished, State::cut, "ti/netfp_proxy", "dump-unfinished"},
        {Cause::dumpInterrupted, State::cut, "ti/netfp_proxy", "process-died"},
        {Cause::dumpBlank, State::empty, "ti/netfp_proxy", "dump-unfinished"},
        {Cause::processNotRunning, State::missing, "ti/netfp_proxy", "process-not-running"},
        {Cause::processesNotListed, State::missing, "ti/netfp_proxy", "dump-missing"},
        {Cause::notSignalled, State::missing, "ti/netfp_proxy", "dump-missing"},
        {Cause::leftOver, State::stale, "mmi/sfn/HeapStats", "part-stale"},
        {Cause::leftOverNotAsked, State::stale, "ti/netfp_proxy", "part-stale"},
        {Cause::leftOverNoDump, State::stale, "ti/netfp_proxy", "process-hangs"},
        {Cause::leftOverNotRunning, State::stale, "ti/netfp_proxy", "process-not-running"},
        {Cause::leftOverDispatcherNotRunning, State::stale, "fuse/sfn/dmaStats", "dispatcher-not-running"},
        {Cause::leftOverNoSource, State::stale, "fuse/sfn/dmaStats", "state-file-missing"},
        {Cause::leftOverNotWritten, State::stale, "fuse/sfn/dmaStats", "not-written"},
        {Cause::pieceInterrupted, State::cut, "archive/dispatcher/startup", "archive-piece-damaged"},
        {Cause::copyIncomplete, State::cut, "netfp_logs_post_mortem", "post-mortem-damaged"},
        {Cause::linuxMissing, State::missing, "linux", "linux-logs-missing"},
        {Cause::linuxFailed, State::missing, "linux", "linux-logs-missing"},
        {Cause::damaged, State::unreadable, "other", "part-damaged"},
    };
    const RuleSet rules;
    for (const auto& [cause, state, name, rule] : cases) {
        Package package;
        Part& part = package.parts.emplace_back();
        part.name = name;
        part.state = state;
        part.expected = true;
        part.cause = textOf(cause, placeOf(part.name), "its detail");
        rules.apply(package, 1000);
        std::string found;
        for (const Finding& finding : package.findings) {
            found += finding.part.empty() ? "" : finding.rule + " ";
        }
        EXPECT_EQ(found, std::string(rule) + " ") << part.cause;
    }
}

TEST(RuleSet, FindsFactsAboutAPackage) {
    PackageFixture fixture;
    fixture.package.clockUnset = true;
    fixture.package.time = Time(std::chrono::seconds(60));
    fixture.package.oddities.push_back({"./mmi/x", "symbolic link to /etc/passwd"});
    fixture.ran("korvel pkg-sup", "Strange things happen\nPermission problems\n");
    fixture.package.sidecar->keys["status"] = "1";
    for (const char* const name :
         {"ti/netfp_proxy", "ti/netfp_server", "ti/netfp_master", "ti/resmgr_server", "ti/syslib_sm_log"}) {
        fixture.age(name, 3600);
    }
    fixture.write("archive/syslib/runtime", "x\n");
    Overlap& overlap = fixture.part("archive/syslib/runtime").overlaps.emplace_back();
    overlap.before = LogEntry{Time(std::chrono::seconds(1)), Level::error, "a", "last"};
    fixture.part("archive/syslib/runtime").invalidBytes = 2;
    fixture.writeLarge("ti/syslib_sm_log", 2'097'100);

    EXPECT_EQ(
        applied(RuleSet(), fixture),
        "warning odd-member in '', 1:\n"
        "  ./mmi/x: symbolic link to /etc/passwd\n"
        "warning clock-unset in '', 1:\n"
        "  : the time of the package is 1970-01-01 00:01:00 UTC\n"
        "warning old-collector in '', 1:\n"
        "  ti: written at 2026-09-21 13:13:20 UTC, the newest part at 2026-09-21 14:13:20 UTC\n"
        "warning log-overlap in 'archive/syslib/runtime', 1:\n"
        "  archive/syslib/runtime: between \"1970-01-01 00:00:01.000000 a: last\" and an unknown entry\n"
        "warning run-failed in '', 1:\n"
        "  sidecar: status: 1\n"
        "note log-full in 'ti/syslib_sm_log', 1:\n"
        "  ti/syslib_sm_log: 2097100 bytes\n"
        "note text-not-utf-8 in 'archive/syslib/runtime', 1:\n"
        "  archive/syslib/runtime: 2 of 2 bytes are not UTF-8\n"
        "note zone-unknown in '', 1:\n"
        "  sidecar: no zone\n"
        "note unknown-complaint in '', 2:\n"
        "  sidecar: Strange things happen\n"
        "  sidecar: Permission problems\n");
}

TEST(RuleSet, FindsPartsAndFoldersThatPerhapsAreLeftOver) {
    PackageFixture fixture;
    fixture.age("fuse/sfn/dmaStats", 10);
    for (Part& part : fixture.package.parts) {
        if (part.name.starts_with("mmi/")) {
            fixture.age(part.name, 10);
        }
    }
    fixture.kill("netfp_master");

    EXPECT_EQ(applied(RuleSet(), fixture),
              "warning old-collector in '', 1:\n"
              "  mmi: written at 2026-09-21 14:13:10 UTC, the newest part at 2026-09-21 14:13:20 UTC\n"
              "warning perhaps-left-over in 'fuse/sfn/dmaStats', 1:\n"
              "  fuse/sfn/dmaStats: written at 2026-09-21 14:13:10 UTC, but fuse/sfn/dispatcherCpu at "
              "2026-09-21 14:13:20 "
              "UTC\n"
              "warning perhaps-left-over in 'ti/netfp_master', 1:\n"
              "  linux/processes: no process netfp_master among 7\n"
              "note sidecar-absent in '', 1:\n");
}

TEST(RuleSet, FindsWhatIsWrongWithTheArchiveItself) {
    PackageFixture fixture;
    fixture.package.end = {Integrity::cut, "the compressed data end early", {}};
    fixture.ran("korvel pkg-sup",
                "Command: /bin/tar -czf /ffs/run/logs/netfp_logs_sup.tgz exited with error, exit code: 2\n");
    fixture.package.zone = "UTC";

    EXPECT_EQ(
        applied(RuleSet(), fixture),
        "error package-cut in '', 1:\n"
        "  : the compressed data end early\n"
        "  : packing failed on the board: no room was left below /ffs/run/logs, or it could not be written\n"
        "  sidecar: Command: /bin/tar -czf /ffs/run/logs/netfp_logs_sup.tgz exited with error, exit code: 2\n"
        "note command-failed in '', 1:\n"
        "  sidecar: Command: /bin/tar -czf /ffs/run/logs/netfp_logs_sup.tgz exited with error, exit code: "
        "2\n");
}

TEST(RuleSet, FindsThingsInNestedPackagesButNoSidecarThere) {
    PackageFixture fixture;
    PackageFixture inner;
    inner.write("linux/messages", "kernel panic\n");
    fixture.package.nested.push_back(inner.package);

    RuleSet().apply(fixture.package, 1000);

    ASSERT_EQ(fixture.package.nested.front().findings.size(), 1);
    EXPECT_EQ(fixture.package.nested.front().findings.front().rule, "crash");
}

TEST(RuleSet, ReadsLinesOnlyUpToTheLimit) {
    PackageFixture fixture;
    fixture.write("linux/messages", "0123456789 kernel panic\n");

    RuleSet().apply(fixture.package, 12);

    EXPECT_EQ(fixture.package.findings.size(), 1) << "only that there is no sidecar";
}

TEST(RuleSet, KnowsWhichValuesItsRulesName) {
    const RuleSet rules;
    const struct {
        const char* part;
        const char* name;
        bool named;
    } cases[] = {{"mmi/sfn/HeapStats", "failed allocations", true},
                 {"mmi/sfn/HeapStats", "allocations", false},
                 {"fuse/sfn/tracing_on", "tracing_on", true},
                 {"mmi/sfn/HeapStats", "tracing_on", false}};
    for (const auto& [part, name, named] : cases) {
        Value value;
        value.part = part;
        value.name = name;
        EXPECT_EQ(rules.names(value), named) << part << " " << name;
    }
}

TEST(RuleSet, NamesAValueWithItsTitle) {
    const RuleSet rules = rulesOf(
        std::string("[[rule]]\nid = 'own'\nwhere = '**'\nseverity = 'note'\nvalue = 'n'\nis = '> 0'\n") +
        texts);
    for (const auto& [title, shown] :
         {std::pair{"", "n = 1"}, {"heap", "heap / n = 1"}, {"server: ", "server / n = 1"}}) {
        PackageFixture fixture;
        Value& value = fixture.package.values.emplace_back();
        value.part = "ti/netfp_server";
        value.title = title;
        value.name = "n";
        value.number = std::int64_t{1};
        value.text = "1";
        EXPECT_THAT(applied(rules, fixture),
                    testing::HasSubstr("  ti/netfp_server: " + std::string(shown) + "\n"));
    }
}

TEST(RuleSet, TakesAnyCharacterInTheNameOfAPart) {
    const RuleSet rules = rulesOf(std::string("[[rule]]\nid = 'own'\nwhere = 'linux/\u0451.+_ (1)*'\n"
                                              "severity = 'note'\nvalue = 'n'\nis = '> 0'\n") +
                                  texts);
    Value value;
    value.name = "n";
    value.part = "linux/\u0451.+_ (1).txt";
    EXPECT_TRUE(rules.names(value));
    value.part = "linux/\u0450.+_ (1).txt";
    EXPECT_FALSE(rules.names(value));
}

TEST(RuleSet, ComparesNumbersOfAllTypes) {
    const struct {
        const char* is;
        Number number;
        const char* text;
        bool found;
    } cases[] = {
        {"> 0", std::int64_t{1}, "1", true},
        {"> 0", std::int64_t{0}, "0", false},
        {">= -1.5", -1.5, "-1.5", true},
        {"< 1", std::uint64_t{18446744073709551615U}, "18446744073709551615", false},
        {"> 1", std::monostate{}, "99999999999999999999999", true},
        {"< 1", std::monostate{}, "-99999999999999999999999", true},
        {"= 7", std::int64_t{7}, "0x7", true},
        {"!= 7", std::int64_t{7}, "7", false},
        {"<= 7", std::int64_t{7}, "7", true},
    };
    for (const auto& [is, number, text, found] : cases) {
        const RuleSet rules =
            rulesOf("[[rule]]\nid = 'own'\nwhere = '**'\nseverity = 'note'\nvalue = 'n'\nis = '" +
                    std::string(is) + "'\n" + texts);
        PackageFixture fixture;
        Value& value = fixture.package.values.emplace_back();
        value.name = "n";
        value.number = number;
        value.text = text;
        rules.apply(fixture.package, 1000);
        EXPECT_EQ(std::ranges::count(fixture.package.findings, std::string("own"), &Finding::rule),
                  found ? 1 : 0)
            << text << " " << is;
    }
}

}  // namespace
}  // namespace Report::Testing
