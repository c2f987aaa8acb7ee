#include "MmiLogCollector.hpp"

#include <algorithm>

#include "Console.hpp"
#include "ConsoleHeader.hpp"
#include "MmiChannel.hpp"
#include "OutputFile.hpp"
#include "Shell.hpp"

namespace Korvel {
namespace {

constexpr std::size_t expectedInstances = 10;

}  // namespace

const std::string MmiLogCollector::id = "mmi";
const std::vector<MmiLogCollector::Entry> MmiLogCollector::mmiInfoCmds = {
    {"SocketSvcInfo", "Socket Service Info"},
};
const std::vector<MmiLogCollector::Entry> MmiLogCollector::mmiStatsCmds = {
    {"SocketSvcCounters", "Socket Service Counters"},
    {"ReassemblyCounters", "Reassembly Counters"},
    {"HeapStats", "Heap Statistics"},
};

MmiLogCollector::MmiLogCollector(const std::string& workspaceDir, unsigned mask)
    : LogCollector(workspaceDir + "/mmi"), results(expectedInstances) {
    if ((mask & information) != 0) {
        commands.insert(commands.end(), mmiInfoCmds.begin(), mmiInfoCmds.end());
    }
    if ((mask & statistics) != 0) {
        commands.insert(commands.end(), mmiStatsCmds.begin(), mmiStatsCmds.end());
    }
}

bool MmiLogCollector::collectLogs(bool /*printRequested*/) {
    return std::all_of(Configuration::getInstanceBegin(), Configuration::getInstanceEnd(),
                       [this](Configuration::DispatcherInstance instance) {
                           return collectInstance(Configuration::dispInstanceToString(instance),
                                                  Configuration::getConfig(instance));
                       });
}

bool MmiLogCollector::collectInstance(const std::string& name, const Configuration::Config& config) {
    progress("Starting log collection from MMI service in dispatcher instance ", name, "...");
    MmiChannel channel(config);
    if (!channel.open()) {
        return false;
    }
    for (const Entry& entry : commands) {
        std::string& reply = results[name][entry.command];
        reply.clear();
        channel.query(entry.command, reply, room());
        count(reply);
    }
    channel.close();
    return true;
}

bool MmiLogCollector::printOnConsole() {
    for (auto instance = Configuration::getInstanceBegin(); instance != Configuration::getInstanceEnd();
         ++instance) {
        const std::string name = Configuration::dispInstanceToString(*instance);
        for (const Entry& entry : commands) {
            const std::string& reply = results[name][entry.command];
            if (!reply.empty()) {
                printLogHeader(name + " " + entry.title);
                print(reply, '\n');
            }
        }
    }
    return std::cout.good();
}

bool MmiLogCollector::dumpToFiles() {
    bool written = true;
    for (auto instance = Configuration::getInstanceBegin(); instance != Configuration::getInstanceEnd();
         ++instance) {
        written = dumpInstance(Configuration::dispInstanceToString(*instance)) && written;
    }
    return written;
}

bool MmiLogCollector::dumpInstance(const std::string& name) {
    const std::string dir = collectorDir + "/" + name + "/";
    if (!executeCommand("mkdir -p " + dir)) {
        return fail("Error while creating directory: ", dir);
    }
    bool written = true;
    for (const Entry& entry : commands) {
        written = writeDumpFile(dir + entry.command + ".log", results[name][entry.command]) && written;
    }
    return written;
}

}  // namespace Korvel
