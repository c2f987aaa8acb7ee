# Korvel for a distribution made with OpenEmbedded, release 3.4 (honister) or later. Earlier releases write overrides with
# "_" instead of ":".
#
# In a layer, the recipe is recipes-support/korvel/korvel_1.0.0.bb. Make its source in a clone:
#
#     git archive --prefix=korvel-1.0.0/ -o korvel-1.0.0.tar.gz HEAD
#
# and put it beside the recipe, as recipes-support/korvel/files/korvel-1.0.0.tar.gz.
#
# The board's own libraries come from recipes of the board's layer. Each of these recipes must make a package of its own name.
# Name the recipes in the layer, for example in the machine's configuration file:
#
#     KORVEL_PLATFORM_RECIPES = "netfp-smlog vask"
#
# By default, a library without a version in its file name is put into the development package. So the recipe of such a
# library needs these lines, besides those that install it:
#
#     FILES_SOLIBSDEV = ""
#     FILES:${PN} += "${libdir}/libnetfpsmlog.so"
#
# For a library without a SONAME, the package tools do not find the package that provides it. RDEPENDS below therefore names
# the packages of the libraries.

SUMMARY = "Control and diagnostics tool for the fast-path packet stack of a base-station board"
SECTION = "admin"
LICENSE = "CLOSED"

SRC_URI = "file://${BP}.tar.gz"

inherit cmake systemd

# host-platform: stand-ins instead of the board's two libraries.
# boardsim: the simulated board, which needs host-platform.
PACKAGECONFIG ??= ""
PACKAGECONFIG[host-platform] = "\
    -DKORVEL_PLATFORM=host, \
    -DKORVEL_PLATFORM=board -DKORVEL_PLATFORM_ROOT=${STAGING_DIR_HOST}"
PACKAGECONFIG[boardsim] = "-DKORVEL_BOARDSIM=ON, -DKORVEL_BOARDSIM=OFF, libseccomp tomlplusplus"

KORVEL_PLATFORM_RECIPES ?= ""
DEPENDS += "${@bb.utils.contains('PACKAGECONFIG', 'host-platform', '', '${KORVEL_PLATFORM_RECIPES}', d)}"
# Named here, because the package tools do not find the dependencies on libraries without a SONAME, nor on the stand-ins.
KORVEL_PLATFORM_PACKAGES = "\
    ${@bb.utils.contains('PACKAGECONFIG', 'host-platform', '${PN}-host-platform', '${KORVEL_PLATFORM_RECIPES}', d)}"

EXTRA_OECMAKE = "-DKORVEL_REPORT=OFF -DKORVEL_UNIT_DIR=${systemd_system_unitdir} -DKORVEL_PACKAGE_TYPE=${IMAGE_PKGTYPE}"

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
    ${docdir}/korvel \
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

# The stand-ins are private: they must not satisfy another package's dependency.
PRIVATE_LIBS:${PN}-host-platform = "libWENVASK.so libnetfpsmlog.so"
INSANE_SKIP:${PN}-host-platform = "dev-so"

# The commands that Korvel and the scripts of its units run, with the options that docs/porting.md names. BusyBox can replace
# findutils and util-linux-flock, if it has flock, and find with -prune, -type, -user and -size.
RDEPENDS:${PN} = "${KORVEL_PLATFORM_PACKAGES} findutils gzip procps tar util-linux-flock"
RDEPENDS:${PN}-boardsim = "${PN} ${PN}-host-platform bash bubblewrap"

# An installation enables none of the units.
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
