# libseccomp for the target processor, in the compiler's default search path.

include(CheckCXXSourceCompiles)
include(FindPackageHandleStandardArgs)

# Search again each time: the library may have been installed since the last configuration.
if(NOT KORVEL_HAS_SECCOMP)
    unset(KORVEL_HAS_SECCOMP CACHE)
endif()
set(CMAKE_REQUIRED_LIBRARIES seccomp)
check_cxx_source_compiles("#include <seccomp.h>\nint main() { return seccomp_init(SCMP_ACT_ALLOW) == nullptr; }"
    KORVEL_HAS_SECCOMP)
unset(CMAKE_REQUIRED_LIBRARIES)

find_package_handle_standard_args(Seccomp
    REQUIRED_VARS KORVEL_HAS_SECCOMP
    REASON_FAILURE_MESSAGE "the simulated board needs libseccomp-dev (scripts/setup.sh)")
if(Seccomp_FOUND AND NOT TARGET korvel::seccomp)
    add_library(korvel::seccomp INTERFACE IMPORTED)
    target_link_libraries(korvel::seccomp INTERFACE seccomp)
endif()
