#include "Sandbox.hpp"

#include <array>
#include <filesystem>
#include <string_view>

#include <unistd.h>

#include "BoardPaths.hpp"
#include "PeerCatalog.hpp"
#include "ScenarioFile.hpp"
#include "SystemCallFilter.hpp"
#include "UserFile.hpp"

namespace Boardsim {

namespace fs = std::filesystem;

namespace {

/// A second place of the tree, for the peers. Their paths must not contain "korvel", because searches of the
/// process list leave such lines out.
constexpr const char* peersTree = "/opt/board";

/// The files that programs need in the board's /etc. There is no group "tty", because an SSH server would
/// give it each terminal, and root without capabilities may not.
constexpr std::array<std::pair<const char*, std::string_view>, 4> etcFiles{{
    {"/etc/passwd", "root:x:0:0:root:/root:/bin/bash\nnobody:x:65534:65534:nobody:/:/bin/false\n"},
    {"/etc/group", "root:x:0:\nnogroup:x:65534:\n"},
    {"/etc/hosts", "127.0.0.1 localhost board\n"},
    {"/etc/hostname", "board\n"},
}};

/// Namespaces, capabilities and the system call filter.
void addLimits(BwrapArguments& arguments) {
    arguments.add(
        {"--unshare-pid", "--unshare-net", "--unshare-ipc", "--unshare-uts", "--hostname", "board"});
    if (::geteuid() != 0) {
        arguments.add({"--unshare-user", "--uid", "0", "--gid", "0"});
    }
    arguments.add({"--cap-drop", "ALL", "--die-with-parent", "--as-pid-1"});
    arguments.addDescriptor("--seccomp", openSystemCallFilter());
}

/// The host's programs and libraries. On most systems /bin and the others are links into /usr.
void addPrograms(BwrapArguments& arguments) {
    arguments.add({"--ro-bind", "/usr", "/usr"});
    for (const char* folder : {"/bin", "/sbin", "/lib", "/lib32", "/lib64", "/libx32"}) {
        if (fs::is_symlink(folder)) {
            arguments.add({"--symlink", fs::read_symlink(folder), folder});
        } else {
            arguments.add({"--ro-bind-try", folder, folder});
        }
    }
}

void addEtc(BwrapArguments& arguments) {
    for (const auto& [path, text] : etcFiles) {
        arguments.addFile("--file", text, path);
    }
    for (const char* path : {"/etc/ld.so.cache", "/etc/alternatives",
                             // Without these, man(1) complains or fails.
                             "/etc/groff", "/etc/man_db.conf", "/etc/manpath.config"}) {
        arguments.add({"--ro-bind-try", path, path});
    }
}

void addDisk(BwrapArguments& arguments, const char* path, std::uint64_t size) {
    arguments.add({"--perms", "1777", "--size", std::to_string(size), "--tmpfs", path});
}

/// These files belong to the whole machine, and root without capabilities may write to most of them.
void protectKernelSettings(BwrapArguments& arguments) {
    for (const char* path :
         {"/proc/acpi", "/proc/asound", "/proc/driver", "/proc/dynamic_debug", "/proc/fs", "/proc/mtrr",
          "/proc/pressure", "/proc/scsi", "/proc/sys", "/proc/sysrq-trigger"}) {
        arguments.add({"--ro-bind-try", path, path});
    }
}

void addFolders(BwrapArguments& arguments, const Scenario& scenario) {
    arguments.add({"--proc", "/proc"});
    protectKernelSettings(arguments);
    arguments.add({"--perms", "0444"});  // of the next file
    arguments.addFile("--ro-bind-data", scenario.cmdline + "\n", "/proc/cmdline");
    arguments.add({"--dev", "/dev"});
    addDisk(arguments, "/tmp", scenario.tmpSize);
    addDisk(arguments, "/ffs", scenario.ffsSize);
    for (const char* folder : {"/ffs/run/logs", "/rom/private", "/rom/config", "/root", BoardPaths::logDir,
                               BoardPaths::receivedDir, BoardPaths::heartbeatDir}) {
        arguments.add({"--dir", folder});
    }
}

void addTree(BwrapArguments& arguments, const ProgramTree& tree) {
    for (const fs::path& folder : tree.folders()) {
        const bool optional = tree.onBoard() / folder == tree.pagesOnBoard();
        const char* const bind = optional ? "--ro-bind-try" : "--ro-bind";
        if (!tree.isPartOfUsr()) {
            arguments.add({bind, tree.onHost() / folder, tree.onBoard() / folder});
        }
        arguments.add({bind, tree.onHost() / folder, peersTree / folder});
    }
    const fs::path program = peersTree / tree.programInTree();
    arguments.add({"--symlink", program, BoardPaths::init});
    for (const PeerEntry& peer : peerCatalog()) {
        arguments.add({"--symlink", program, BoardPaths::peerProgram(peer.name)});
    }
}

void addScenario(BwrapArguments& arguments, Scenario scenario) {
    if (!scenario.config.empty()) {
        arguments.addFile("--file", readUserFile(scenario.config), BoardPaths::config);
        scenario.config = BoardPaths::config;
    }
    arguments.addFile("--file", scenarioText(scenario), BoardPaths::scenario);
}

/// The SSH server uses files of its users only if nobody else can write to them, and refuses a shell that
/// /etc/shells does not list.
void addSshFiles(BwrapArguments& arguments, const SshAccess& ssh, const ProgramTree& tree) {
    arguments.add({"--symlink", peersTree / tree.programInTree(), BoardPaths::sshServer});
    arguments.add({"--perms", "0700", "--dir", "/root/.ssh", "--perms", "0600"});
    arguments.addFile("--file", ssh.authorizedKeys.value_or(""), "/root/.ssh/authorized_keys");
    arguments.addFile("--file", "/bin/bash\n", "/etc/shells");
    arguments.add({"--dir", BoardPaths::serverKeys});
    if (ssh.hostKey) {
        arguments.addFile("--file", *ssh.hostKey, BoardPaths::hostKey);
    }
}

void addEnvironment(BwrapArguments& arguments, const ProgramTree& tree) {
    const std::string path = tree.programsOnBoard().string() + ":" + tree.commandsOnBoard().string() +
                             ":/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin";
    const std::string pages = tree.pagesOnBoard().string() + ":";  // then come the host's
    arguments.add({"--setenv", "PATH", path, "--setenv", "MANPATH", pages});
    arguments.add({"--setenv", "HOME", "/root", "--chdir", "/root"});
}

}  // namespace

BwrapArguments sandboxArguments(const Scenario& scenario, const SshAccess& ssh, const ProgramTree& tree) {
    BwrapArguments arguments;
    addLimits(arguments);
    addPrograms(arguments);
    addEtc(arguments);
    addFolders(arguments, scenario);
    addTree(arguments, tree);
    addScenario(arguments, scenario);
    if (ssh.on) {
        addSshFiles(arguments, ssh, tree);
    }
    addEnvironment(arguments, tree);
    return arguments;
}

}  // namespace Boardsim
