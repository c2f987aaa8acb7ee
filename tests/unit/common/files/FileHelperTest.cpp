#include <cerrno>
#include <csignal>

#include <gtest/gtest.h>
#include <unistd.h>

#include "FileHelper.hpp"
#include "RunningProcesses.hpp"
#include "TestFiles.hpp"

namespace {

using Korvel::FileHelper;
using Korvel::FileQuestion;
using namespace std::chrono_literals;

FileQuestion questionAbout(const std::string& path, FileQuestion::Kind kind) {
    FileQuestion question;
    question.kind = kind;
    path.copy(question.path.data(), path.size());
    return question;
}

int errorOf(FileHelper& helper, const FileQuestion& question) {
    return helper.ask(question, Korvel::deadlineIn(5s)).answer.error;
}

void signalHelpers(int signal) {
    std::string name = contentOfFile("/proc/self/comm");
    name.pop_back();
    for (const pid_t helper : childrenNamed(name, ::getpid())) {
        ::kill(helper, signal);
    }
}

TEST(FileHelper, ThatWasKilledIsReplacedForANewLook) {
    writeFile("/tmp/file", "text");
    const FileQuestion question = questionAbout("/tmp/file", FileQuestion::Kind::open);
    FileHelper helper;
    EXPECT_EQ(errorOf(helper, question), 0);

    signalHelpers(SIGKILL);

    EXPECT_EQ(errorOf(helper, question), 0);
}

TEST(FileHelper, OutlivesSignalsThatAreSentToEveryProcess) {
    writeFile("/tmp/file", "text");
    FileHelper helper;
    EXPECT_EQ(errorOf(helper, questionAbout("/tmp/file", FileQuestion::Kind::open)), 0);

    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
        signalHelpers(signal);
    }

    EXPECT_EQ(errorOf(helper, questionAbout("/tmp/file", FileQuestion::Kind::read)), 0);
}

TEST(FileHelper, ThatWasKilledTakesTheFileWithItThatItHadOpen) {
    writeFile("/tmp/file", "text");
    FileHelper helper;
    EXPECT_EQ(errorOf(helper, questionAbout("/tmp/file", FileQuestion::Kind::open)), 0);

    signalHelpers(SIGKILL);

    EXPECT_EQ(errorOf(helper, questionAbout("/tmp/file", FileQuestion::Kind::read)), EIO);
}

}  // namespace
