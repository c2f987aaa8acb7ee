#pragma once

#include <string>

// The program's help text and its parts. The file help.txt spells the text out, and nothing else does.

/// The whole text with these paths as defaults. The program swaps the two, and scripts rely on that.
std::string korvelHelp(const std::string& clientPath = "/tmp/Korvel",
                       const std::string& masterPath = "/tmp/NetfpMaster");

/// The part before the first manager's block.
std::string commonArgumentsHelp(const std::string& clientPath = "/tmp/Korvel",
                                const std::string& masterPath = "/tmp/NetfpMaster");

/// The block with this title, such as "Actions", for another indentation and program name.
std::string managerHelp(const std::string& title, const std::string& indent, const std::string& programName);

/// The same for the action with this keyword.
std::string actionHelp(const std::string& keyword, const std::string& indent, const std::string& programName);
