# Korvel for a distribution made with OpenEmbedded. Beside this file it takes the source as korvel-1.0.0.tar.gz:
#
#     git archive --prefix=korvel-1.0.0/ -o korvel-1.0.0.tar.gz HEAD
#
# The board's own libraries come from recipes of the board's layer, which names them, say in its machine's file:
#
#     KORVEL_PLATFORM_RECIPES = "netfp-smlog vask"

SUMMARY = "Control and diagnostics tool for the fast-path packet stack of a base-station board"
SECTION = "admin"
LICENSE = "CLOSED"

SRC_URI = "file://${BP}.tar.gz"

inherit cmake systemd

# host-platform: stand-ins in place of the board's two libraries. boardsim: the simulated board, on such a platform.
PACKAGECONFIG ??= ""
PACKAGECONFIG[host-platform] = "\
    -DKORVEL_PLATFORM=host, \
    -DKORVEL_PLATFORM=board -DKORVEL_PLATFORM_ROOT=${STAGING_DIR_HOST}"
PACKAGECONFIG[boardsim] = "-DKORVEL_BOARDSIM=ON, -DKORVEL_BOARDSIM=OFF, tomlplusplus"

KORVEL_PLATFORM_RECIPES ?= ""
DEPENDS += "${@bb.utils.contains('PACKAGECONFIG', 'host-platform', '', '${KORVEL_PLATFORM_RECIPES}', d)}"

EXTRA_OECMAKE = "-DKORVEL_UNIT_DIR=${systemd_system_unitdir}"

PACKAGES = "${PN}-dbg ${PN} ${PN}-doc ${PN}-host-platform ${PN}-boardsim"

FILES:${PN} = "\
    ${bindir}/korvel \
    ${libexecdir}/korvel/archive-aside \
    ${libexecdir}/korvel/make-package \
    ${systemd_system_unitdir}/korvel-archive.service \
    ${systemd_system_unitdir}/korvel-package.service \
    ${systemd_system_unitdir}/korvel-postmortem.service \
    ${systemd_system_unitdir}/korvel-shutdown-package.service \
    ${systemd_system_unitdir}/korvel-supervision-retry.timer \
    ${systemd_system_unitdir}/korvel-supervision.service \
    ${systemd_system_unitdir}/tmp-korvel.mount \
    ${datadir}/bash-completion/completions/korvel \
    ${datadir}/fish/vendor_completions.d/korvel.fish \
    ${datadir}/zsh/site-functions/_korvel \
"
FILES:${PN}-doc = "\
    ${docdir}/korvel/examples/platform.conf \
    ${mandir}/man1/boardsim.1 \
    ${mandir}/man1/korvel.1 \
    ${mandir}/man5/fpdispatcher.conf.5 \
    ${mandir}/man5/korvel-package.5 \
"
FILES:${PN}-host-platform = "\
    ${libdir}/korvel/libWENVASK.so \
    ${libdir}/korvel/libnetfpsmlog.so \
"
FILES:${PN}-boardsim = "\
    ${bindir}/boardsim \
    ${libexecdir}/korvel/board/devmem \
    ${libexecdir}/korvel/board/fp_linux_log_collect \
"

# The stand-ins are private: no other package is to be satisfied by them.
PRIVATE_LIBS:${PN}-host-platform = "libWENVASK.so libnetfpsmlog.so"
INSANE_SKIP:${PN}-host-platform = "dev-so"

# The shell commands that Korvel runs, by those names and with those options; see docs/porting.md.
RDEPENDS:${PN} = "gzip procps tar"
RDEPENDS:${PN}-boardsim = "${PN} ${PN}-host-platform bash bubblewrap"

# None of the units is enabled by being installed.
SYSTEMD_SERVICE:${PN} = "\
    korvel-archive.service \
    korvel-package.service \
    korvel-postmortem.service \
    korvel-shutdown-package.service \
    korvel-supervision-retry.timer \
    korvel-supervision.service \
    tmp-korvel.mount \
"
SYSTEMD_AUTO_ENABLE = "disable"
