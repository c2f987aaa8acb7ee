// Many processes and threads write and read one log at the same time.

#include <chrono>
#include <functional>
#include <list>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

#include "ChildProcess.hpp"
#include "Gate.hpp"
#include "LogFixture.hpp"

namespace {

class SmLogCrowdTest : public LogFixture {
protected:
    static constexpr int writers = 4;
    static constexpr int perWriter = 2000;
    static constexpr std::size_t allOfThem = std::size_t{writers} * perWriter;

    /// One writer's entries: "writer WRITER entry NUMBER", padded by the writer's own letters.
    void writeAs(int writer, int count) const {
        for (int i = 0; i < count; ++i) {
            client().write(6, "Crowd", "%s", textOf(writer, i).c_str());
        }
    }

    static std::string textOf(int writer, int number) {
        const std::string padding(static_cast<std::size_t>(number * 7 % 90), static_cast<char>('a' + writer));
        return "writer " + std::to_string(writer) + " entry " + std::to_string(number) + " " + padding;
    }

    /// True if `texts` are entries of writeAs(), and the entries of each writer are complete and in order.
    /// They start with the first entry, or if the log was overwritten, with the first remaining one.
    static bool areComplete(const std::vector<std::string>& texts, bool overwritten = false) {
        std::map<int, int> next;
        for (const std::string& text : texts) {
            std::istringstream words(text);
            std::string word;
            int writer = -1;
            int number = -1;
            words >> word >> writer >> word >> number;
            const auto expected = next.try_emplace(writer, overwritten ? number : 0).first;
            if (number != expected->second++ || text != textOf(writer, number)) {
                ADD_FAILURE() << "unexpected: " << text;
                return false;
            }
        }
        return true;
    }

    /// Follows the log until it has read `count` entries. Returns their texts.
    std::vector<std::string> follow(std::size_t count) const {
        std::vector<std::string> texts;
        for (unsigned position = 0; texts.size() < count;) {
            const Reading news = read(position);
            position = news.end;
            const std::vector<std::string> more = textsOf(news.text);
            texts.insert(texts.end(), more.begin(), more.end());
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return texts;
    }
};

TEST_F(SmLogCrowdTest, LosesNothingThatManyProcessesWrite) {
    std::list<ChildProcess> processes;
    for (int reader = 0; reader < 2; ++reader) {
        processes.emplace_back([this] { return areComplete(follow(allOfThem)); });
    }
    for (int writer = 0; writer < writers; ++writer) {
        processes.emplace_back([this, writer] {
            writeAs(writer, perWriter);
            return true;
        });
    }

    for (ChildProcess& process : processes) {
        EXPECT_TRUE(process.succeeds());
    }
    const std::vector<std::string> kept = keptTexts();
    EXPECT_EQ(kept.size(), allOfThem);
    EXPECT_TRUE(areComplete(kept));
}

TEST_F(SmLogCrowdTest, ReturnsWholeEntriesWhileItIsOverwritten) {
    constexpr int manyMore = 20000;
    std::list<ChildProcess> processes;
    for (int writer = 0; writer < 3; ++writer) {
        processes.emplace_back([this, writer] {
            writeAs(writer, manyMore);
            return true;
        });
    }
    for (int i = 0; i < 50; ++i) {
        EXPECT_TRUE(areComplete(keptTexts(), true));
    }

    for (ChildProcess& process : processes) {
        EXPECT_TRUE(process.succeeds());
    }
    EXPECT_TRUE(areComplete(keptTexts(), true));
}

TEST_F(SmLogCrowdTest, LosesNothingThatManyThreadsWrite) {
    std::vector<std::string> followed;
    std::list<std::thread> threads;
    threads.emplace_back([this, &followed] { followed = follow(allOfThem); });
    for (int writer = 0; writer < writers; ++writer) {
        threads.emplace_back([this, writer] { writeAs(writer, perWriter); });
    }

    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_TRUE(areComplete(followed));
    EXPECT_EQ(keptTexts(), followed);
}

TEST_F(SmLogCrowdTest, HasOneClientForManyThreads) {
    std::vector<SmLog*> clients(8);
    std::list<std::thread> threads;
    for (SmLog*& found : clients) {
        threads.emplace_back([this, &found] { found = SmLog::getClientInstance(name.c_str(), 3); });
    }

    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(std::set(clients.begin(), clients.end()).size(), 1U);
    EXPECT_NE(clients.front(), nullptr);
}

TEST_F(SmLogCrowdTest, IsCreatedOnceByManyProcessesAtOnce) {
    constexpr int openers = 8;
    for (int round = 0; round < 20; ++round) {
        Gate start;
        std::list<ChildProcess> processes;
        for (int opener = 0; opener < openers; ++opener) {
            processes.emplace_back([this, &start, opener] {
                start.pass();
                writeAs(opener, 1);
                return true;
            });
        }
        start.open();
        for (ChildProcess& process : processes) {
            EXPECT_TRUE(process.succeeds());
        }

        ChildProcess reader([this] {  // in a child, so that the next round starts without a client
            const std::vector<std::string> kept = keptTexts();
            return kept.size() == openers && areComplete(kept);
        });
        EXPECT_TRUE(reader.succeeds());
        ::unlink(path.c_str());
    }
}

}  // namespace
