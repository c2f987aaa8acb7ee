# Writes OUTPUT, a C++ file with the assets. ASSETS is a list of NAME=FILE[+FILE...]. An asset is the text of its
# files, one after another.
#   cmake -D OUTPUT=Assets.cpp -D ASSETS="page.css=style.css" -P Embed.cmake

# Compilers need not accept string literals of more than 65536 bytes.
set(mostBytes 60000)

# hash_source(VARIABLE TEXT)
# Sets VARIABLE to the SHA-256 of TEXT as a source of a Content-Security-Policy: base64 of 32 bytes.
function(hash_source variable text)
    set(alphabet ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/)
    string(SHA256 digits "${text}")
    string(REGEX MATCHALL "......" groups "${digits}00")  # 33 bytes: 11 groups of 24 bits
    set(encoded "")
    foreach(group IN LISTS groups)
        foreach(shift 18 12 6 0)
            math(EXPR position "(0x${group} >> ${shift}) & 63")
            string(SUBSTRING "${alphabet}" ${position} 1 letter)
            string(APPEND encoded "${letter}")
        endforeach()
    endforeach()
    string(SUBSTRING "${encoded}" 0 43 encoded)  # the last letter holds only the padding
    set(${variable} "sha256-${encoded}=" PARENT_SCOPE)
endfunction()

# Pieces end at the end of a line, so that no character is split.
function(append_pieces text)
    string(LENGTH "${text}" left)
    while(left GREATER mostBytes)
        string(SUBSTRING "${text}" 0 ${mostBytes} piece)
        string(FIND "${piece}" "\n" end REVERSE)
        math(EXPR end "${end} + 1")
        string(SUBSTRING "${text}" 0 ${end} piece)
        string(SUBSTRING "${text}" ${end} -1 text)
        file(APPEND "${OUTPUT}" "    R\"asset(${piece})asset\",\n")
        string(LENGTH "${text}" left)
    endwhile()
    file(APPEND "${OUTPUT}" "    R\"asset(${text})asset\",\n")
endfunction()

file(WRITE "${OUTPUT}" "#include \"EmbeddedAsset.hpp\"\n\nnamespace Report {\nnamespace {\n\n")
set(rows "")
set(number 0)
foreach(asset IN LISTS ASSETS)
    string(REGEX MATCH "^([^=]+)=(.+)$" matched "${asset}")
    set(name "${CMAKE_MATCH_1}")
    string(REPLACE "+" ";" files "${CMAKE_MATCH_2}")
    set(content "")
    foreach(file IN LISTS files)
        file(READ "${file}" part)
        string(APPEND content "${part}")
    endforeach()
    hash_source(hash "${content}")
    file(APPEND "${OUTPUT}" "constexpr std::string_view pieces${number}[] = {\n")
    append_pieces("${content}")
    file(APPEND "${OUTPUT}" "};\n")
    string(APPEND rows "    {\"${name}\", \"${hash}\", pieces${number}},\n")
    math(EXPR number "${number} + 1")
endforeach()
file(APPEND "${OUTPUT}" "\nconstexpr EmbeddedAsset table[] = {\n${rows}};\n\n}  // namespace\n\n"
    "std::span<const EmbeddedAsset> embeddedAssets() { return table; }\n\n}  // namespace Report\n")
