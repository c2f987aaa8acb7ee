# korvel_room(NAME SOURCES file... LINKS target...)
# One folder of the product or of the simulated board: a static library that exports only its own folder. It
# links the lower rooms that it may use, so an include that points up does not compile.
function(korvel_room name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
    add_library(korvel_${name} STATIC ${arg_SOURCES})
    add_library(korvel::${name} ALIAS korvel_${name})
    target_include_directories(korvel_${name} PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}")
    target_link_libraries(korvel_${name} PUBLIC ${arg_LINKS} PRIVATE korvel::flags)
endfunction()
