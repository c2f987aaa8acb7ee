#include "Managers.hpp"

#include "ActionMgr.hpp"
#include "ArchiveMgr.hpp"
#include "CollectorMgr.hpp"
#include "SupervisionMgr.hpp"

namespace Korvel {

std::vector<std::unique_ptr<IManager>> managers;

void registerManagers() {
    managers.push_back(std::make_unique<CollectorMgr>());
    managers.push_back(std::make_unique<ActionMgr>());
    managers.push_back(std::make_unique<SupervisionMgr>());
    managers.push_back(std::make_unique<ArchiveMgr>());
}

}  // namespace Korvel
