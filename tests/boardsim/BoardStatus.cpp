#include "BoardStatus.hpp"

#include <regex>

Outcome apart(const std::string& script) {
    const std::string beginning =
        "board() { read -r < <(exec \"$program\" \"$@\" -- "
        "sh -c \"${attack+eval \\\"\\$attack\\\"; }echo ready; exec sleep 1000\"); board=$!; }\n"
        "follow() { coproc \"$program\" status \"$1\"; exec 3<&${COPROC[0]}; "
        "for ((line = 0; line < $2; line++)); do next > /dev/null; done; }\n"
        "next() { read -r text <&3 && echo \"$text\"; }\n"
        "program=$0\n";
    return run({"unshare", "--user", "--map-root-user", "--pid", "--fork", "--mount-proc", "--kill-child",
                "bash", "-c", beginning + script, BOARDSIM_PROGRAM});
}

std::string steady(std::string text) {
    text = std::regex_replace(text, std::regex("[0-9-]{10}T[0-9:]{8}([.][0-9]{3})?Z"), "TIME");
    text = std::regex_replace(text, std::regex("Board [0-9]+"), "Board ID");
    return std::regex_replace(text, std::regex(" {4}[0-9]{3}  running"), "     ID  running");
}
