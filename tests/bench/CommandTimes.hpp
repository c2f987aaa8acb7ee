#pragma once

#include <map>
#include <string>

/// Measures all commands. Returns the median wall-clock time in milliseconds by benchmark name. `showAll`:
/// prints each benchmark's figures when it ends.
std::map<std::string, double> measureCommandTimes(bool showAll);

/// Names of the benchmarks.
constexpr const char* dumpInfoAndStatistics = "korvel -d all dump dinf dstat";
constexpr const char* startItsChildren = "one line, and as many system(...)";
constexpr const char* printHelp = "korvel --help";
constexpr const char* printOneLine = "a program that prints one line";
constexpr const char* getPortByName = "korvel getport eth1";
constexpr const char* getPortByNumber = "korvel getport 4";
constexpr const char* swapPorts = "korvel portswap eth0 eth1";
constexpr const char* dumpMemory = "korvel mem_dump of 64 MiB";
constexpr const char* pipeDump = "korvel mem_dump of 64 MiB into a pipe";
constexpr const char* pipeText = "cat of its text into a pipe";
constexpr const char* dumpByXxd = "xxd -g1 -u of the same";
constexpr const char* dumpByHexdump = "hexdump -C of the same";
constexpr const char* readKernelCommandLine = "sh -c 'sh -c \"/bin/cat /proc/cmdline\"'";
