#include <cerrno>
#include <csignal>

#include <gtest/gtest.h>
#include <unistd.h>

#include "FileHelper.hpp"
#include "RunningProcesses.hpp"
#include "TestFiles.hpp"

namespace {

using Korvel::FileHelper;
using Korvel::FileRequest;
using namespace std::chrono_literals;

FileRequest requestFor(const std::string& path, FileRequest::Kind kind) {
    FileRequest request;
    request.kind = kind;
    path.copy(request.path.data(), path.size());
    return request;
}

int errorOf(FileHelper& helper, const FileRequest& request) {
    return helper.query(request, Korvel::deadlineIn(5s)).response.error;
}

void signalHelpers(int signal) {
    std::string name = contentOfFile("/proc/self/comm");
    name.pop_back();
    for (const pid_t helper : childrenNamed(name, ::getpid())) {
        ::kill(helper, signal);
    }
}

TEST(FileHelper, IsReplacedAfterItWasKilled) {
    writeFile("/tmp/file", "text");
    const FileRequest request = requestFor("/tmp/file", FileRequest::Kind::open);
    FileHelper helper;
    EXPECT_EQ(errorOf(helper, request), 0);

    signalHelpers(SIGKILL);

    EXPECT_EQ(errorOf(helper, request), 0);
}

TEST(FileHelper, SurvivesSignalsThatAreSentToEveryProcess) {
    writeFile("/tmp/file", "text");
    FileHelper helper;
    EXPECT_EQ(errorOf(helper, requestFor("/tmp/file", FileRequest::Kind::open)), 0);

    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
        signalHelpers(signal);
    }

    EXPECT_EQ(errorOf(helper, requestFor("/tmp/file", FileRequest::Kind::read)), 0);
}

TEST(FileHelper, LosesItsOpenFileWhenItIsKilled) {
    writeFile("/tmp/file", "text");
    FileHelper helper;
    EXPECT_EQ(errorOf(helper, requestFor("/tmp/file", FileRequest::Kind::open)), 0);

    signalHelpers(SIGKILL);

    EXPECT_EQ(errorOf(helper, requestFor("/tmp/file", FileRequest::Kind::read)), EIO);
}

}  // namespace
