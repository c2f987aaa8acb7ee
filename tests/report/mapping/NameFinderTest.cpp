#include <set>
#include <string>

#include <gtest/gtest.h>

#include "NameFinder.hpp"

namespace {

std::string namesIn(const std::string& text) {
    std::set<std::string> names;
    Report::NameFinder finder([&names](const std::string& name) { names.insert(name); });
    finder.append(text);
    finder.finish();
    std::string list;
    for (const std::string& name : names) {
        list += (list.empty() ? "" : " ") + name;
    }
    return list;
}

TEST(NameFinderTest, FindsUsersAndHostsInPrompts) {
    EXPECT_EQ(namesIn("Alice@BTS-17:~# ls\n"), "alice bts-17");
    EXPECT_EQ(namesIn("[bob@bts-18 /tmp]$ scp carol@bts-19.site.example.net:/x .\n"),
              "bob bts-18 bts-19 carol example site");
    EXPECT_EQ(namesIn("root@10.0.0.1:~# ssh first.last@localhost:\n"), "first last");
    EXPECT_EQ(namesIn("alice@a1# x\nbob@b1% x\ncarol@c1$ x\ndave@d1> x\nerin@e1 ~ $ x\n"),
              "a1 alice b1 bob c1 carol d1 dave e1 erin");
    EXPECT_EQ(namesIn("bts-20 login: frank\nbts-21 login:\r\nLast login: Sun Nov 22 06:03:09\n"),
              "bts-20 bts-21 frank");
}

TEST(NameFinderTest, LeavesTheUsualEndsOfDomainNames) {
    EXPECT_EQ(namesIn("a@gate.intranet: b@x.y.com: c@z.acme: d@w.de: e@v.west9: f@u.local:\n"),
              "a acme b c d e f gate intranet u v w west9 x y z");
}

TEST(NameFinderTest, TakesNothingElseWithAnAtSignForAPrompt) {
    EXPECT_EQ(namesIn("2: eth0@if5: <UP>\n3: vlan10@eth0.10: <UP>\nveth1@if2: x\n"), "");
    EXPECT_EQ(namesIn("user@1000.service: done\ngetty@tty1.service: x\n"), "");
    EXPECT_EQ(namesIn("@host: user@: a@b c @@: x\n"), "");
}

TEST(NameFinderTest, FindsUsersOfProcesses) {
    EXPECT_EQ(namesIn("USER         PID %CPU COMMAND\n"
                      "root           1  0.6 init\n"
                      "alice        301  0.0 sh USER PID\n"
                      "longname+    302  0.0 sh\n"
                      "systemd+     303  0.0 systemd-resolved\n"
                      "1000         304  0.0 sh\n"
                      "\n"
                      "bob          305  0.0 no listing\n"),
              "alice longname");
    EXPECT_EQ(namesIn("UID        PID  PPID CMD\ncarol      12     1 sh\n"), "carol");
    EXPECT_EQ(namesIn("  PID USER       VSZ COMMAND\n   12 dave      1m sh\n"), "dave");
}

TEST(NameFinderTest, FindsTheHostInLinesOfSyslog) {
    EXPECT_EQ(namesIn("Nov 22 06:03:09 bts-17 kernel: x\nNov  2 06:03:09 bts-18 sshd[12]: x\n"),
              "bts-17 bts-18");
    EXPECT_EQ(namesIn("<14>Nov 22 06:03:09 bts-17 sshd[12]: x\r\n"), "bts-17");
    EXPECT_EQ(namesIn("2026-11-22T06:03:09.143577+00:00 bts-19.site.net systemd[1]: x\n"), "bts-19 site");
    EXPECT_EQ(namesIn("<14>1 2026-11-22T06:03:09Z bts-20 korvel 12 - - x\n"), "bts-20");
    EXPECT_EQ(namesIn("Nov 22 06:03:09 bts-21 user.info korvel: x\n"), "bts-21");
    EXPECT_EQ(
        namesIn("Nov 22 06:03:09 bts-22 -- MARK --\nNov 22 06:03:10 bts-23 last message repeated 2 times\n"),
        "bts-22 bts-23");
}

TEST(NameFinderTest, TakesNoTagOrLevelForAHost) {
    EXPECT_EQ(namesIn("<14>Nov 22 06:03:09 korvel: Detected L2: x\n"), "");
    EXPECT_EQ(namesIn("2026-11-22T06:03:09.143577Z 3 iwf_dispatcher: started\n"), "");
    EXPECT_EQ(namesIn("2026-11-22T06:03:09Z INFO main: started\nNov 22 06:03:09 WARN main: x\n"), "");
    EXPECT_EQ(namesIn("Nov 22 06:03:09 something happened here: x\n"), "");
}

TEST(NameFinderTest, LeavesOutFixedNames) {
    EXPECT_EQ(namesIn("root@localhost:\nKorvel@linux:\nnobody@fuse:\nwww-data@iwf:\n"), "");
}

TEST(NameFinderTest, FindsNamesHoweverTheTextIsCutIntoPieces) {
    std::string found;
    Report::NameFinder finder([&found](const std::string& name) { found += name + " "; });
    for (const char byte : std::string("x alice@bts-17: y")) {
        finder.append({&byte, 1});
    }
    finder.finish();
    EXPECT_EQ(found, "alice bts-17 ");
}

TEST(NameFinderTest, FindsNamesAnywhereInALongLine) {
    for (std::size_t before = 65'536 - 30; before < 65'536 + 5; ++before) {
        EXPECT_EQ(namesIn(std::string(before, ' ') + "alice@bts-17:" + std::string(70'000, ' ')),
                  "alice bts-17");
    }
}

}  // namespace
