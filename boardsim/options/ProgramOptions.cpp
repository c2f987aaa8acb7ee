#include "ProgramOptions.hpp"

#include <array>

#include "ScenarioFile.hpp"
#include "UserFile.hpp"

namespace Boardsim {
namespace {

constexpr std::string_view sshSection = "Access by SSH";
constexpr std::string_view otherSection = "Other options";

constexpr std::array table{
    ProgramOption{"ssh", sshSection, "",
                  "runs an SSH server on the board, for one connection through the standard streams: "
                  "ssh -o ProxyCommand='boardsim --ssh ...' root@board",
                  [](Request& r, const std::string&) { r.ssh.on = true; }},
    ProgramOption{"authorized-keys", sshSection, "FILE",
                  "the public keys that may log in as root, as in ~/.ssh/authorized_keys",
                  [](Request& r, const std::string& v) { r.ssh.authorizedKeys = readUserFile(v); }},
    ProgramOption{
        "host-key", sshSection, "FILE",
        "the private key of the board, made by ssh-keygen without a passphrase (default: a new one)",
        [](Request& r, const std::string& v) { r.ssh.hostKey = readUserFile(v); }},
    ProgramOption{"scenario", otherSection, "FILE",
                  "a TOML file with the names of the options for the board and its peers as keys; options "
                  "override it, --without and --fault add to it",
                  [](Request& r, const std::string& v) { loadScenario(v, r.scenario); }},
    ProgramOption{"h", otherSection, "", "print the usage and the options",
                  [](Request& r, const std::string&) { r.help = Help::brief; }},
    ProgramOption{"help", otherSection, "", "print this help: the options, the peers and their faults",
                  [](Request& r, const std::string&) { r.help = Help::full; }},
};

}  // namespace

std::span<const ProgramOption> programOptions() {
    return table;
}

}  // namespace Boardsim
