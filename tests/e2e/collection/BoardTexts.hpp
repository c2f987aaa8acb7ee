#pragma once

#include <map>
#include <string>
#include <vector>

/// Contents by path below the work directory.
using Files = std::map<std::string, std::string>;

using Words = std::vector<std::string>;

// The texts of a simulated board, and the expected result of collecting them. Independent of the program
// under test: the texts come only from the peers and the files of the board.

/// The MMI commands of "dinf" and "dstat", in the order in which they are sent.
const Words infoCommands{"SocketSvcInfo"};
const Words statsCommands{"SocketSvcCounters", "ReassemblyCounters", "HeapStats"};
const Words allCommands{"SocketSvcInfo", "SocketSvcCounters", "ReassemblyCounters", "HeapStats"};

/// The state files of "dinf" and "dstat".
const Words infoStates{"tracing_on"};
const Words statsStates{"dispatcherCpu", "dmaStats"};
const Words allStates{"tracing_on", "dispatcherCpu", "dmaStats"};

/// The NetFP processes in the order in which korvel signals them.
const Words netfpProcesses{"netfp_proxy", "netfp_server", "netfp_master", "resmgr_server"};

/// The note after a dump without its last line.
const std::string incompleteNote =
    "\n====> This log may be not complete, terminator pattern was not found <====\n";

/// The line before a section of printed output: 64 columns, filled with '#'.
std::string header(const std::string& title);

/// A printed section: its header, the text, an empty line.
std::string section(const std::string& title, const std::string& text);

/// `line` with a line end, `count` times.
std::string lines(int count, const std::string& line);

/// The text of a state file as the dispatcher published it.
std::string stateText(const std::string& instance, const std::string& state);

/// The dump of a NetFP process that received no request.
std::string dumpText(const std::string& process);

/// The printed sections of a dispatcher's state files and of its replies to MMI commands.
std::string printedStates(const std::string& instance, const Words& states);
std::string printedReplies(const std::string& instance, const Words& commands);

/// The files for the same, and for the dumps of NetFP processes.
Files stateFiles(const std::string& instance, const Words& states);
Files replyFiles(const std::string& instance, const Words& commands);
Files dumpFiles(const Words& processes);

/// The files of the MMI commands of an instance that answered none of them.
Files emptyReplyFiles(const std::string& instance, const Words& commands);

/// All these files in one.
Files together(std::vector<Files> parts);
