#include "BoardTexts.hpp"

#include "InterfaceTable.hpp"
#include "MmiReply.hpp"
#include "NetfpState.hpp"
#include "TestFiles.hpp"

using Boardsim::InterfaceTable;
using Boardsim::mmiReplyText;
using Boardsim::netfpProxyState;
using Boardsim::netfpServerState;
using Boardsim::resourceManagerState;

namespace {

const std::map<std::string, std::string> stateTitles{
    {"tracing_on", "Tracing Enabled"},
    {"dispatcherCpu", "Dispatcher CPU"},
    {"dmaStats", "Dma Service Statistics"},
    {"fpBridgeStats", "FPBridge Statistics"},
};

const std::map<std::string, std::string> commandTitles{
    {"SocketSvcInfo", "Socket Service Info"},
    {"SocketSvcCounters", "Socket Service Counters"},
    {"ReassemblyCounters", "Reassembly Counters"},
    {"HeapStats", "Heap Statistics"},
};

const std::map<std::string, std::string (*)()> processStates{
    {"netfp_proxy", [] { return netfpProxyState(); }},
    {"netfp_server", [] { return netfpServerState(); }},
    {"netfp_master", [] { return InterfaceTable().text(); }},
    {"resmgr_server", [] { return resourceManagerState(); }},
};

std::string stateFile(const std::string& instance, const std::string& state) {
    return "fuse/" + instance + "/" + state + ".log";
}

std::string replyFile(const std::string& instance, const std::string& command) {
    return "mmi/" + instance + "/" + command + ".log";
}

std::string dumpFile(const std::string& process) {
    return "ti/" + process + ".log";
}

}  // namespace

std::string header(const std::string& title) {
    constexpr std::size_t columns = 64;
    std::string line = "### " + title + " ";
    line.resize(columns, '#');
    return line + "\n";
}

std::string section(const std::string& title, const std::string& text) {
    return header(title) + text + "\n";
}

std::string lines(int count, const std::string& line) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += line + "\n";
    }
    return text;
}

std::string stateText(const std::string& instance, const std::string& state) {
    return contentOfFile("/tmp/fuse/" + instance + "/" + state);
}

std::string dumpText(const std::string& process) {
    return "<" + process + "_dump>\n" + processStates.at(process)() + "</" + process + "_dump>\n";
}

std::string printedStates(const std::string& instance, const Words& states) {
    std::string text;
    for (const std::string& state : states) {
        text += section(stateTitles.at(state), stateText(instance, state));
    }
    return text;
}

std::string printedReplies(const std::string& instance, const Words& commands) {
    std::string text;
    for (const std::string& command : commands) {
        text += section(instance + " " + commandTitles.at(command), mmiReplyText(instance, command));
    }
    return text;
}

Files stateFiles(const std::string& instance, const Words& states) {
    Files files;
    for (const std::string& state : states) {
        files[stateFile(instance, state)] = stateText(instance, state);
    }
    return files;
}

Files replyFiles(const std::string& instance, const Words& commands) {
    Files files;
    for (const std::string& command : commands) {
        files[replyFile(instance, command)] = mmiReplyText(instance, command);
    }
    return files;
}

Files dumpFiles(const Words& processes) {
    Files files;
    for (const std::string& process : processes) {
        files[dumpFile(process)] = dumpText(process);
    }
    return files;
}

Files emptyReplyFiles(const std::string& instance, const Words& commands) {
    Files files;
    for (const std::string& command : commands) {
        files[replyFile(instance, command)] = "";
    }
    return files;
}

Files together(std::vector<Files> parts) {
    Files files;
    for (Files& part : parts) {
        files.merge(part);
    }
    return files;
}
