#pragma once

#include <string>

/// The first lines of a verbose run.
inline const std::string verboseEnabled = "Verbose mode enabled.\n";

/// Each record to the system log prints an empty line. There is one, because the board's kernel isolates CPUs
/// 1 to 3.
inline const std::string isolatedCpusRecord = "\n";

/// The output of "-v getport 4" after the options.
inline const std::string getPort4Lines = isolatedCpusRecord +
                                         "Looking up Action keyword \"getport\"\n"
                                         "Detected Action keywords.\n"
                                         "Executing \"getport\" action\n"
                                         "Get Port Entry\n"
                                         "Get Port: Retrieving port number for \"4\"\n"
                                         "Get Port: Using port number value\n"
                                         "4\n";
