#include "FixedNames.hpp"

#include <algorithm>
#include <array>

namespace Report {

namespace {

using namespace std::string_view_literals;

/// Folders, parts, endings, closing lines and programs, folded.
constexpr std::array packageNames{
    "fuse"sv, "mmi"sv, "ti"sv, "archive"sv, "linux"sv, "iwf"sv, "sfn"sv, "dispatcher"sv, "syslib"sv,
    // Parts
    "historylog"sv, "tracing_on"sv, "dispatchercpu"sv, "dmastats"sv, "fpbridgestats"sv, "socketsvcinfo"sv,
    "socketsvccounters"sv, "reassemblycounters"sv, "heapstats"sv, "syslib_sm_log"sv, "startup"sv, "middle"sv,
    "runtime"sv, "cmdline"sv, "interfaces"sv, "mounts"sv, "processes"sv, "system"sv, "uptime"sv,
    "netfp_logs"sv, "netfp_logs_sup"sv, "netfp_logs_post_mortem"sv, "netfp_logs_shutdown"sv,
    // Endings
    "log"sv, "gz"sv, "tgz"sv, "tar"sv, "run"sv, "previous"sv,
    // Programs and their closing lines
    "netfp_proxy"sv, "netfp_server"sv, "netfp_master"sv, "resmgr_server"sv, "netfp_proxy_dump"sv,
    "netfp_server_dump"sv, "netfp_master_dump"sv, "resmgr_server_dump"sv, "iwf_dispatcher"sv,
    "sfn_dispatcher"sv, "system_log"sv, "fp_linux_log_collect"sv, "korvel"sv, "supervision"sv,
    "netlinkhelper"sv, "kernel"sv};

/// Users, groups and hosts that most systems have, folded.
constexpr std::array systemNames{"root"sv,
                                 "daemon"sv,
                                 "nobody"sv,
                                 "nogroup"sv,
                                 "bin"sv,
                                 "sys"sv,
                                 "sync"sv,
                                 "games"sv,
                                 "man"sv,
                                 "lp"sv,
                                 "mail"sv,
                                 "news"sv,
                                 "uucp"sv,
                                 "proxy"sv,
                                 "www-data"sv,
                                 "backup"sv,
                                 "list"sv,
                                 "irc"sv,
                                 "gnats"sv,
                                 "_apt"sv,
                                 "_ssh"sv,
                                 "adm"sv,
                                 "tty"sv,
                                 "disk"sv,
                                 "kmem"sv,
                                 "dialout"sv,
                                 "fax"sv,
                                 "voice"sv,
                                 "cdrom"sv,
                                 "floppy"sv,
                                 "tape"sv,
                                 "sudo"sv,
                                 "audio"sv,
                                 "dip"sv,
                                 "operator"sv,
                                 "src"sv,
                                 "shadow"sv,
                                 "utmp"sv,
                                 "video"sv,
                                 "sasl"sv,
                                 "plugdev"sv,
                                 "staff"sv,
                                 "users"sv,
                                 "wheel"sv,
                                 "lock"sv,
                                 "input"sv,
                                 "kvm"sv,
                                 "render"sv,
                                 "sgx"sv,
                                 "crontab"sv,
                                 "netdev"sv,
                                 "ssl-cert"sv,
                                 "systemd"sv,
                                 "systemd-journal"sv,
                                 "systemd-network"sv,
                                 "systemd-resolve"sv,
                                 "systemd-timesync"sv,
                                 "systemd-coredump"sv,
                                 "systemd-oom"sv,
                                 "messagebus"sv,
                                 "dbus"sv,
                                 "polkitd"sv,
                                 "sshd"sv,
                                 "syslog"sv,
                                 "klog"sv,
                                 "ftp"sv,
                                 "http"sv,
                                 "halt"sv,
                                 "shutdown"sv,
                                 "rpc"sv,
                                 "rpcuser"sv,
                                 "_rpc"sv,
                                 "statd"sv,
                                 "ntp"sv,
                                 "ntpsec"sv,
                                 "chrony"sv,
                                 "_chrony"sv,
                                 "avahi"sv,
                                 "tcpdump"sv,
                                 "tss"sv,
                                 "uuidd"sv,
                                 "dnsmasq"sv,
                                 "postfix"sv,
                                 "postdrop"sv,
                                 "_lldpd"sv,
                                 "snmp"sv,
                                 "postgres"sv,
                                 "localhost"sv,
                                 "localdomain"sv,
                                 "ip6-localhost"sv,
                                 "ip6-loopback"sv,
                                 "none"sv,
                                 "unknown"sv};

bool anyName(const auto& test) {
    return std::ranges::any_of(packageNames, test) || std::ranges::any_of(systemNames, test);
}

}  // namespace

bool isFixedName(std::string_view word) {
    return anyName([word](std::string_view name) { return name == word; });
}

bool beginsFixedName(std::string_view text) {
    return anyName([text](std::string_view name) { return name.starts_with(text); });
}

}  // namespace Report
