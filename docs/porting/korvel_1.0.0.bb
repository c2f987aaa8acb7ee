# Korvel for a distribution made with OpenEmbedded, from release 3.4 (honister) on: before that, overrides were written
# with "_" for ":". In a layer it stands as recipes-support/korvel/korvel_1.0.0.bb, and its source, made in a clone by
#
#     git archive --prefix=korvel-1.0.0/ -o korvel-1.0.0.tar.gz HEAD
#
# in a folder beside it, as recipes-support/korvel/files/korvel-1.0.0.tar.gz.
#
# The board's own libraries come from recipes of the board's layer, each with a package of its name. The layer names them,
# say in its machine's file:
#
#     KORVEL_PLATFORM_RECIPES = "netfp-smlog vask"
#
# A library that has no version in its name counts as part of a development package, and one that has no name written in
# it (SONAME), as nobody's. So the recipe of such a library has to have, beside what installs it:
#
#     FILES_SOLIBSDEV = ""
#     FILES:${PN} += "${libdir}/libnetfpsmlog.so"

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
PACKAGECONFIG[boardsim] = "-DKORVEL_BOARDSIM=ON, -DKORVEL_BOARDSIM=OFF, libseccomp tomlplusplus"

KORVEL_PLATFORM_RECIPES ?= ""
DEPENDS += "${@bb.utils.contains('PACKAGECONFIG', 'host-platform', '', '${KORVEL_PLATFORM_RECIPES}', d)}"
# Said in words, since neither libraries without SONAME nor the private stand-ins are found as what the program needs.
KORVEL_PLATFORM_PACKAGES = "\
    ${@bb.utils.contains('PACKAGECONFIG', 'host-platform', '${PN}-host-platform', '${KORVEL_PLATFORM_RECIPES}', d)}"

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

# The commands that Korvel and the scripts of its units run, with the options that docs/porting.md names. A BusyBox can
# do for findutils and util-linux-flock where it has flock, and find with -prune, -type, -user and -size.
RDEPENDS:${PN} = "${KORVEL_PLATFORM_PACKAGES} findutils gzip procps tar util-linux-flock"
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
