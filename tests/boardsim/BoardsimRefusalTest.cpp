// The errors of boardsim on machines that allow no sandbox. The refusals are real. The test runs in its own
// user namespace with the settings of such a machine.

#include <algorithm>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "Boardsim.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;

namespace {

/// Runs as an unprivileged user in a namespace after `preparation` was done as root.
Outcome asPlainUser(const std::string& preparation, const Surroundings& surroundings = {}) {
    return run({"unshare", "--user", "--map-user=1000", "--map-group=1000", "--keep-caps", "--mount", "sh",
                "-ec", preparation + "\nexec setpriv --ambient-caps -all --inh-caps -all \"$0\" --bare true",
                BOARDSIM_PROGRAM},
               surroundings);
}

/// Mounts a file system over the kernel's settings that has only this one.
std::string withSetting(const std::string& name, int value) {
    return "mount -t tmpfs none /proc/sys/kernel; echo " + std::to_string(value) + " > /proc/sys/kernel/" +
           name;
}

/// A folder with a bwrap that fails as on another machine.
class RefusingBwrap {
public:
    explicit RefusingBwrap(const std::string& words)
        : folder(testing::TempDir() + "refusing_bwrap." + std::to_string(::getpid())) {
        writeFile(folder / "bwrap", "#!/bin/sh\necho 'bwrap: " + words + "' >&2\nexit 1\n");
        fs::permissions(folder / "bwrap", fs::perms::owner_all | fs::perms::others_all);
    }
    RefusingBwrap(const RefusingBwrap&) = delete;
    RefusingBwrap& operator=(const RefusingBwrap&) = delete;
    RefusingBwrap(RefusingBwrap&&) = delete;
    RefusingBwrap& operator=(RefusingBwrap&&) = delete;
    ~RefusingBwrap() { fs::remove_all(folder); }

    Surroundings surroundings() const {
        return {.environment = {{"PATH", folder.string() + ":/usr/bin:/bin"}}};
    }

private:
    fs::path folder;
};

}  // namespace

TEST(BoardsimRefusalTest, NamesTheRemedyIfBubblewrapIsMissing) {
    const Outcome expected{.status = 3,
                           .out = "",
                           .err =
                               "boardsim: no sandbox: bwrap cannot be run: No such file or directory\n"
                               "boardsim: install bubblewrap (Debian, Ubuntu: apt-get install bubblewrap)\n"};

    EXPECT_EQ(boardsim({"true"}, {.environment = {{"PATH", "/nowhere"}}}), expected);
}

TEST(BoardsimRefusalTest, NamesTheSettingThatTurnsUserNamespacesOff) {
    const Outcome expected{
        .status = 3,
        .out = "",
        .err =
            "bwrap: Creating new namespace failed: nesting depth or /proc/sys/user/max_*_namespaces "
            "exceeded (ENOSPC)\n"
            "boardsim: no sandbox: user namespaces are turned off (user.max_user_namespaces = 0)\n"
            "boardsim: as root: sysctl user.max_user_namespaces=10000; or run boardsim as root\n"};

    EXPECT_EQ(asPlainUser("echo 0 > /proc/sys/user/max_user_namespaces"), expected);
}

TEST(BoardsimRefusalTest, NamesTheSettingThatLeavesUserNamespacesToRoot) {
    const RefusingBwrap bwrap("No permissions to create a new namespace");
    const Outcome expected{
        .status = 3,
        .out = "",
        .err =
            "bwrap: No permissions to create a new namespace\n"
            "boardsim: no sandbox: only root may create user namespaces (kernel.unprivileged_userns_clone = "
            "0)\n"
            "boardsim: as root: sysctl kernel.unprivileged_userns_clone=1; or run boardsim as root\n"};

    EXPECT_EQ(asPlainUser(withSetting("unprivileged_userns_clone", 0), bwrap.surroundings()), expected);
}

TEST(BoardsimRefusalTest, NamesTheProfileIfAppArmorRestrictsUserNamespaces) {
    const RefusingBwrap bwrap("setting up uid map: Permission denied");
    const Outcome expected{
        .status = 3,
        .out = "",
        .err =
            "bwrap: setting up uid map: Permission denied\n"
            "boardsim: no sandbox: AppArmor lets only programs with a profile create user namespaces\n"
            "boardsim: as root: install the profile docs/apparmor/boardsim (it says how), or allow "
            "all programs:\n"
            "boardsim: sysctl kernel.apparmor_restrict_unprivileged_userns=0\n"};

    EXPECT_EQ(asPlainUser(withSetting("apparmor_restrict_unprivileged_userns", 1), bwrap.surroundings()),
              expected);
}

TEST(BoardsimRefusalTest, NamesTheCapabilityThatRootLacks) {
    const Outcome outcome = boardsim({"--bare", "--", "boardsim", "true"});  // root of a board has none

    EXPECT_EQ(outcome.status, 3);
    EXPECT_TRUE(outcome.err.starts_with("bwrap: ")) << outcome.err;
    EXPECT_EQ(outcome.err.substr(outcome.err.find('\n') + 1),
              "boardsim: no sandbox: root lacks the capability CAP_SYS_ADMIN, as in most containers\n"
              "boardsim: run boardsim outside the container, or give the container more privileges\n"
              "boardsim: (docker, podman: --privileged)\n");
}

TEST(BoardsimRefusalTest, ShowsTheReasonOfBwrapIfNoSettingExplainsIt) {
    const RefusingBwrap bwrap("Unknown option --perms");
    const Outcome expected{.status = 3,
                           .out = "",
                           .err =
                               "bwrap: Unknown option --perms\n"
                               "boardsim: no sandbox: bwrap gives the reason above\n"
                               "boardsim: the sandbox needs user namespaces, or root with its capabilities\n"
                               "boardsim: if a container forbids both, run boardsim outside the container\n"};

    EXPECT_EQ(asPlainUser("mount -t tmpfs none /proc/sys/kernel", bwrap.surroundings()), expected);
}
