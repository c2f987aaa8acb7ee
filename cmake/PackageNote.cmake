# The release number inside each program and library, as an ELF note: https://systemd.io/ELF_PACKAGE_METADATA/
# A target links korvel::package_note. The note is a section of an object file, not the linker's option
# --package-metadata, because some linkers do not know that option (lld 14, for example).

set(KORVEL_PACKAGE_TYPE cmake CACHE STRING
    "Kind of package that the programs are built for, which their ELF note names: deb, rpm, ...")

configure_file("${CMAKE_CURRENT_LIST_DIR}/PackageNote.cpp.in" "${CMAKE_BINARY_DIR}/PackageNote.cpp" @ONLY)
add_library(korvel_package_note OBJECT "${CMAKE_BINARY_DIR}/PackageNote.cpp")
add_library(korvel::package_note ALIAS korvel_package_note)
target_link_libraries(korvel_package_note PRIVATE korvel::flags)
