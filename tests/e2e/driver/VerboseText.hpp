#pragma once

#include <string>

/// First lines of a verbose run.
inline const std::string verboseEnabled = "Verbose mode enabled.\n";

/// Each record to the system log leaves an empty line. The board's kernel isolates CPUs 1 to 3, which is one.
inline const std::string isolatedCpusRecord = "\n";

/// What "-v getport 4" prints once the options are done.
inline const std::string getPort4Lines = isolatedCpusRecord +
                                         "Looking up Action keyword \"getport\"\n"
                                         "Detected Action keywords.\n"
                                         "Executing \"getport\" action\n"
                                         "Get Port Entry\n"
                                         "Get Port: Retrieving port number for \"4\"\n"
                                         "Get Port: Using port number value\n"
                                         "4\n";
