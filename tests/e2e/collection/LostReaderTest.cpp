#include <algorithm>
#include <iterator>

#include "PackageFixture.hpp"
#include "TestFiles.hpp"
#include "Trace.hpp"

namespace {

/// Packages of runs whose output nobody reads.
class LostReaderTest : public PackageFixture {
protected:
    static constexpr const char* readerGone = "/tmp/reader-gone";

    LostReaderTest() { startBoard(); }

    /// A shell command that waits until the reader has closed the pipe.
    static std::string awaitReaderGone() {
        return std::string("while [ ! -e ") + readerGone + " ]; do sleep 0.01; done\n";
    }

    /// Runs "korvel -v -d all WORDS" with the default disposition of SIGPIPE. Standard output is a pipe to
    /// `reader`, a shell command that ends early. The shell command `before` comes first. `redirection` is
    /// that of standard error. Returns the reader's output, and korvel's exit status and standard error
    /// without the messages of tar.
    static Outcome collectInto(const std::string& reader, const std::string& words, const std::string& before,
                               const Surroundings& surroundings,
                               const std::string& redirection = "2> /tmp/stderr") {
        writeFile("/tmp/stderr", "");
        std::string script = "{ " + before + "env --default-signal=PIPE korvel -v -d all " + words + " " +
                             redirection + "; echo $? > /tmp/status; } | { " + reader +
                             "; exec < /dev/null; touch " + readerGone + "; }";
        const Outcome both = run({"bash", "-c", script}, surroundings);
        EXPECT_EQ(both.err, "");
        std::string err;
        for (const std::string& line : linesOfFile("/tmp/stderr")) {
            err += line.starts_with("/bin/tar: ") ? "" : line + "\n";
        }
        return {std::stoi(contentOfFile("/tmp/status")), both.out, err};
    }

    /// Checks that the package unpacks and holds everything that was collected.
    static void expectWholePackage(const std::string& path) {
        EXPECT_EQ(run({"gzip", "-t", path}), success());
        EXPECT_EQ(filesIn(path), workFiles());
        EXPECT_EQ(workFiles().size(), 2U * 3 + 1 + 2 * 4 + 4 + 1);
    }

    /// The errors for a listing that tar cannot write and for lost output.
    static constexpr const char* lost =
        "Command: /bin/tar -czvf /ffs/run/logs/netfp_logs_post_mortem.tgz -C /tmp/korvel/ ./ exited with "
        "error, exit code: 2\n"
        "Error while writing standard output: Broken pipe\n";
};

TEST_F(LostReaderTest, ThePackageIsCreatedIfTheReaderIsGoneFromTheStart) {
    const Outcome outcome =
        collectInto("true", "pkg-pm", awaitReaderGone(), withCommand("fp_linux_log_collect", ""));

    EXPECT_EQ(outcome, failure("", lost));
    expectWholePackage(package("_post_mortem.tgz"));
}

TEST_F(LostReaderTest, ThePackageIsCreatedIfTheReaderGoesAfterTheFirstLine) {
    const Outcome outcome =
        collectInto("head -1", "pkg-pm", "", withCommand("fp_linux_log_collect", awaitReaderGone()));

    EXPECT_EQ(outcome, failure("Verbose mode enabled.\n", lost));
    expectWholePackage(package("_post_mortem.tgz"));
}

TEST_F(LostReaderTest, ThePackageIsCreatedIfNobodyReadsTheErrorsEither) {
    const Outcome outcome =
        collectInto("head -1", "pkg-pm", "", withCommand("fp_linux_log_collect", awaitReaderGone()), "2>&1");

    EXPECT_EQ(outcome, failure("Verbose mode enabled.\n", ""));
    expectWholePackage(package("_post_mortem.tgz"));
}

TEST_F(LostReaderTest, LogsOfTheSystemAreGatheredIfTheReaderIsGone) {
    const Outcome outcome =
        collectInto("true", "pkg-pm dinf", awaitReaderGone(),
                    withCommand("fp_linux_log_collect", "echo gathering\necho gathered > \"$1/gathered\"\n"));

    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(filesIn(package("_post_mortem.tgz"))["gathered"], "gathered\n");
}

TEST_F(LostReaderTest, TarIsStartedWithSigpipeIgnored) {
    Words calls;
    runTraced("execve,rt_sigaction", {"korvel", "-d", "iwf", "pkg", "dinf"}, calls, true);

    const auto tar = std::find_if(calls.begin(), calls.end(), [](const std::string& call) {
        return call.find("execve(\"/bin/tar\"") != std::string::npos;
    });
    ASSERT_NE(tar, calls.end());
    const auto last = std::find_if(std::reverse_iterator(tar), calls.rend(), [](const std::string& call) {
        return call.find("rt_sigaction(SIGPIPE, ") != std::string::npos;
    });
    ASSERT_NE(last, calls.rend());
    EXPECT_THAT(*last, testing::HasSubstr("sa_handler=SIG_IGN"));
}

}  // namespace
