# The installation directories of GNUInstallDirs: relative to the prefix, or absolute. The build tree and the
# installation have the same layout. Programs find the platform libraries relative to themselves, so either
# tree can be moved or mounted elsewhere as a whole.
#
# KORVEL_BINDIR, KORVEL_LIBEXECDIR, KORVEL_MANDIR and KORVEL_PRIVATE_LIBDIR are relative to the top of that layout. The
# top is the prefix. If a directory is outside the prefix, the top is the nearest common parent of all of them.

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
# Sets the run-time search path with which programs in a directory of the layout find the platform libraries.
function(korvel_runpath variable folder)
    cmake_path(RELATIVE_PATH KORVEL_PRIVATE_LIBDIR BASE_DIRECTORY "${folder}" OUTPUT_VARIABLE libraries)
    set(${variable} "$ORIGIN/${libraries}" PARENT_SCOPE)
endfunction()
