# RE2 for the target processor. Debian's package has no CMake configuration.

include(FindPackageHandleStandardArgs)

find_path(RE2_INCLUDE_DIR re2/re2.h)
find_library(RE2_LIBRARY re2)
mark_as_advanced(RE2_INCLUDE_DIR RE2_LIBRARY)
find_package_handle_standard_args(re2
    REQUIRED_VARS RE2_LIBRARY RE2_INCLUDE_DIR
    REASON_FAILURE_MESSAGE "korvel-report needs libre2-dev (scripts/setup.sh report)")
if(re2_FOUND AND NOT TARGET re2::re2)
    add_library(re2::re2 UNKNOWN IMPORTED)
    set_target_properties(re2::re2 PROPERTIES
        IMPORTED_LOCATION "${RE2_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${RE2_INCLUDE_DIR}")
endif()
