# The folders of an installation, as GNUInstallDirs has them: relative to the prefix, or absolute. Build tree and
# installation have the same layout, so that programs find the platform libraries in the same way, relative to
# themselves, and either tree can be moved or mounted elsewhere as a whole.
#
# KORVEL_BINDIR, KORVEL_LIBEXECDIR, KORVEL_MANDIR and KORVEL_PRIVATE_LIBDIR are relative to the top of that layout. The
# top stands for the prefix; where a folder is not below the prefix, for the nearest folder that has all of them below it.

include(GNUInstallDirs)

set(korvelInstallFolders "${CMAKE_INSTALL_BINDIR}" "${CMAKE_INSTALL_LIBEXECDIR}" "${CMAKE_INSTALL_MANDIR}"
    "${CMAKE_INSTALL_LIBDIR}/korvel")
cmake_path(SET korvelTop NORMALIZE "${CMAKE_INSTALL_PREFIX}")
foreach(folder IN LISTS korvelInstallFolders)
    cmake_path(ABSOLUTE_PATH folder BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}" NORMALIZE)
    cmake_path(IS_PREFIX korvelTop "${folder}" isBelow)
    while(NOT isBelow)
        cmake_path(GET korvelTop PARENT_PATH korvelTop)
        cmake_path(IS_PREFIX korvelTop "${folder}" isBelow)
    endwhile()
endforeach()

# korvel_below_top(VARIABLE FOLDER)
function(korvel_below_top variable folder)
    cmake_path(ABSOLUTE_PATH folder BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}" NORMALIZE)
    cmake_path(RELATIVE_PATH folder BASE_DIRECTORY "${korvelTop}")
    set(${variable} "${folder}" PARENT_SCOPE)
endfunction()

korvel_below_top(KORVEL_BINDIR "${CMAKE_INSTALL_BINDIR}")
korvel_below_top(KORVEL_LIBEXECDIR "${CMAKE_INSTALL_LIBEXECDIR}")
korvel_below_top(KORVEL_MANDIR "${CMAKE_INSTALL_MANDIR}")
korvel_below_top(KORVEL_PRIVATE_LIBDIR "${CMAKE_INSTALL_LIBDIR}/korvel")

# korvel_runpath(VARIABLE FOLDER)
# Where programs in a folder of the layout look for the platform libraries.
function(korvel_runpath variable folder)
    cmake_path(RELATIVE_PATH KORVEL_PRIVATE_LIBDIR BASE_DIRECTORY "${folder}" OUTPUT_VARIABLE libraries)
    set(${variable} "$ORIGIN/${libraries}" PARENT_SCOPE)
endfunction()
