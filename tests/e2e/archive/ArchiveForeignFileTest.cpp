// Files that another user planted in the archive's folders.

#include <filesystem>
#include <fstream>
#include <sstream>

#include "ArchiveRunFixture.hpp"
#include "ForeignOwner.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;

namespace {

class ArchiveForeignFileTest : public ArchiveRunFixture {
protected:
    /// Runs the archiver until it has written to the dispatcher's file. Another user has planted something
    /// before.
    Outcome runWithForeign(const std::string& path) {
        return runInjected(foreignOwnerOf(path),
                           {"sh", "-c",
                            "(until [ -s " + dispatcher.files.runtimePath +
                                " ]; do sleep 0.05; done; kill $$) & exec korvel archive"});
    }

    void expectRefused() {
        EXPECT_EQ(records(), (std::vector<std::string>{openForMonitoring(dispatcher), notOpened(syslib)}));
    }
};

TEST_F(ArchiveForeignFileTest, AFileIsReplacedInsteadOfWritten) {
    writeFile(syslib.files.runtimePath, "planted");
    const std::ifstream planted(syslib.files.runtimePath);

    EXPECT_EQ(runWithForeign(syslib.files.runtimePath), endedBy(SIGTERM));

    EXPECT_EQ(records(),
              (std::vector<std::string>{openForMonitoring(dispatcher), openForMonitoring(syslib)}));
    EXPECT_NE(syslib.files.runtime(), "planted");
    EXPECT_EQ((std::ostringstream() << planted.rdbuf()).str(), "planted");
}

TEST_F(ArchiveForeignFileTest, ALinkIsNotFollowed) {
    writeFile("/tmp/precious", "precious");
    fs::create_directories(syslib.files.directory);
    fs::create_symlink("/tmp/precious", syslib.files.runtimePath);

    EXPECT_EQ(runWithForeign(syslib.files.runtimePath), endedBy(SIGTERM));

    expectRefused();
    EXPECT_EQ(contentOfFile("/tmp/precious"), "precious");
}

TEST_F(ArchiveForeignFileTest, ALinkInPlaceOfTheFolderIsNotFollowed) {
    fs::create_directories("/tmp/elsewhere");
    fs::create_directories("/tmp/korvel/archive");
    fs::create_directory_symlink("/tmp/elsewhere", syslib.files.directory);

    EXPECT_EQ(runWithForeign(syslib.files.directory), endedBy(SIGTERM));

    expectRefused();
    EXPECT_TRUE(fs::is_empty("/tmp/elsewhere"));
}

}  // namespace
