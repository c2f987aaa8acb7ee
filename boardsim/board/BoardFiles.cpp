#include "BoardFiles.hpp"

#include <array>
#include <filesystem>
#include <string>

#include "BoardPaths.hpp"
#include "HostBoard.hpp"
#include "PeerCatalog.hpp"
#include "ScenarioFile.hpp"
#include "TextFile.hpp"
#include "TrafficClock.hpp"

namespace Boardsim {
namespace {

struct BoardFile {
    const char* path;
    bool (*present)(const Scenario& scenario);
    std::string (*text)(const Scenario& scenario);
};

std::string noText(const Scenario& /*scenario*/) {
    return {};
}

/// All files that depend on the scenario. A file that is not present is removed.
constexpr std::array boardFiles{
    BoardFile{BoardPaths::scenario, [](const Scenario&) { return true; }, scenarioText},
    BoardFile{BoardPaths::trafficStart, [](const Scenario& s) { return s.traffic.isOn(); },
              [](const Scenario& s) { return TrafficClock::startText(s.traffic); }},
    BoardFile{"/rom/private/is_master",
              [](const Scenario& s) { return s.deployment == Deployment::sfnMaster; }, noText},
    BoardFile{"/rom/private/is_ant", [](const Scenario& s) { return s.deployment == Deployment::sfnAntenna; },
              noText},
    BoardFile{"/rom/config/deployment_type",
              [](const Scenario& s) { return s.deployment == Deployment::iwf; },
              [](const Scenario&) { return std::string("4core_Iwf\n"); }},
    BoardFile{"/rom/private/fpdispatcher.conf", [](const Scenario& s) { return !s.config.empty(); },
              [](const Scenario& s) { return readTextFile(s.config); }},
    BoardFile{HostBoard::secureFile, [](const Scenario& s) { return s.secured; },
              [](const Scenario&) { return std::string("1\n"); }},
    BoardFile{HostBoard::secureErrorFile, [](const Scenario& s) { return s.secureError != 0; },
              [](const Scenario& s) { return std::to_string(s.secureError) + "\n"; }},
    BoardFile{HostBoard::cmaErrorFile, [](const Scenario& s) { return s.cmaError != 0; },
              [](const Scenario& s) { return std::to_string(s.cmaError) + "\n"; }},
};

void removeLeftovers() {
    for (const char* path : {"/tmp/NetfpMaster", "/dev/log", "/tmp/fuse", BoardPaths::systemLog}) {
        std::filesystem::remove_all(path);
    }
    for (const char* directory : {BoardPaths::logDir, BoardPaths::receivedDir}) {
        for (const auto& file : std::filesystem::directory_iterator(directory)) {
            std::filesystem::remove(file);
        }
    }
    for (const PeerEntry& peer : peerCatalog()) {
        std::filesystem::remove(BoardPaths::heartbeatFile(peer.name));
        std::filesystem::remove("/tmp/" + std::string(peer.name) + ".log");
    }
}

}  // namespace

void writeBoardFiles(const Scenario& scenario) {
    removeLeftovers();
    for (const BoardFile& file : boardFiles) {
        if (file.present(scenario)) {
            writeTextFile(file.path, file.text(scenario));
        } else {
            std::filesystem::remove(file.path);
        }
    }
}

}  // namespace Boardsim
