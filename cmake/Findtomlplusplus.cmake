# toml++: its own package configuration or, if no library exists for the target processor, only its headers.

find_package(tomlplusplus CONFIG QUIET)
if(NOT tomlplusplus_FOUND)
    include(CheckIncludeFileCXX)
    set(CMAKE_REQUIRED_FLAGS "-std=c++20")
    set(CMAKE_REQUIRED_DEFINITIONS -DTOML_HEADER_ONLY=1)
    unset(KORVEL_HAS_TOML_HEADERS CACHE)  # the headers may have been installed since
    check_include_file_cxx("toml++/toml.h" KORVEL_HAS_TOML_HEADERS)
    unset(CMAKE_REQUIRED_FLAGS)
    unset(CMAKE_REQUIRED_DEFINITIONS)
    if(KORVEL_HAS_TOML_HEADERS AND NOT TARGET tomlplusplus::tomlplusplus)
        add_library(tomlplusplus::tomlplusplus INTERFACE IMPORTED)
        target_compile_definitions(tomlplusplus::tomlplusplus INTERFACE TOML_HEADER_ONLY=1)
    endif()
    set(tomlplusplus_FOUND "${KORVEL_HAS_TOML_HEADERS}")
endif()
