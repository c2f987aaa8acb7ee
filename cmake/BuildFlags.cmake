# Compiler and linker flags of every target: warnings, and the flags of the OpenSSF compiler hardening guide
# that the compiler supports. Targets link korvel::flags.

include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)

add_library(korvel_flags INTERFACE)
add_library(korvel::flags ALIAS korvel_flags)

target_compile_features(korvel_flags INTERFACE cxx_std_20)
target_compile_options(korvel_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion
    -Wformat=2 -Wimplicit-fallthrough -Wnon-virtual-dtor -Woverloaded-virtual
    -Werror=format-security)
# In a unity build, file-local names of one source are visible in the next.
target_compile_options(korvel_flags INTERFACE $<$<NOT:$<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>>:-Wshadow>)
if(KORVEL_WERROR)
    target_compile_options(korvel_flags INTERFACE -Werror)
endif()

function(korvel_use_compile_flag flag)
    string(MAKE_C_IDENTIFIER "KORVEL_HAS${flag}" known)
    check_cxx_compiler_flag("-Werror ${flag}" ${known})
    if(${known})
        target_compile_options(korvel_flags INTERFACE ${flag})
    endif()
endfunction()

foreach(flag IN ITEMS
        -ffunction-sections -fdata-sections
        -Wtrampolines -Wbidi-chars=any -Wreserved-identifier
        -fstack-protector-strong -fstack-clash-protection
        -fcf-protection=full -mbranch-protection=standard
        -fstrict-flex-arrays=3 -ftrivial-auto-var-init=zero
        -fno-delete-null-pointer-checks -fno-strict-overflow -fno-strict-aliasing)
    korvel_use_compile_flag(${flag})
endforeach()

# 64-bit file sizes and times, even if long has 32 bits.
target_compile_definitions(korvel_flags INTERFACE _GLIBCXX_ASSERTIONS _FILE_OFFSET_BITS=64 _TIME_BITS=64)

if(KORVEL_FUZZ)
    target_compile_options(korvel_flags INTERFACE -fsanitize=fuzzer-no-link)
    if(NOT KORVEL_SANITIZE)
        # Recording every comparison takes a third of the time. The dictionaries name what is compared.
        target_compile_options(korvel_flags INTERFACE -fno-sanitize-coverage=trace-cmp)
    endif()
endif()
if(KORVEL_COVERAGE)
    # Relocated counters are in a mapped file, so they are complete even if a signal ends the process.
    target_compile_options(korvel_flags INTERFACE
        "-fprofile-instr-generate=${CMAKE_BINARY_DIR}/counters/%m%c.profraw" -fcoverage-mapping
        "SHELL:-mllvm -runtime-counter-relocation")
    target_link_options(korvel_flags INTERFACE -fprofile-instr-generate)
endif()
if(KORVEL_SANITIZE)
    target_compile_options(korvel_flags INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(korvel_flags INTERFACE -fsanitize=address,undefined)
else()
    # _FORTIFY_SOURCE needs optimization and conflicts with the sanitizers' own checks.
    target_compile_options(korvel_flags INTERFACE
        $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE>
        $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=3>)
endif()

set(CMAKE_POSITION_INDEPENDENT_CODE ON)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

target_link_options(korvel_flags INTERFACE
    -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack -Wl,-z,nodlopen
    -Wl,--gc-sections -Wl,--as-needed -Wl,--no-copy-dt-needed-entries -Wl,--enable-new-dtags)
