# What is missing for korvel-report, by header: KORVEL_REPORT_MISSING.

set(KORVEL_REPORT_MISSING "")
foreach(header IN ITEMS zlib.h archive.h CLI/CLI.hpp nlohmann/json.hpp kainjow/mustache.hpp re2/re2.h toml++/toml.h
        nettle/sha2.h zstd.h)
    string(MAKE_C_IDENTIFIER "KORVEL_FOLDER_OF_${header}" folder)
    find_path(${folder} "${header}")
    mark_as_advanced(${folder})
    if(NOT ${folder})
        list(APPEND KORVEL_REPORT_MISSING "${header}")
    endif()
endforeach()
list(JOIN KORVEL_REPORT_MISSING ", " KORVEL_REPORT_MISSING)
