#include "Vask.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>

#include "BoardSetting.hpp"
#include "HostBoard.hpp"
#include "PhysicalWindow.hpp"

namespace {

using HostBoard::boardSetting;
using HostBoard::PhysicalWindow;

// Callers read on after the returned address, so a window is mapped in one piece unless it would fill the
// address space.
constexpr std::uint64_t mappingStep = std::uint64_t{1} << (sizeof(void*) > 4 ? 32 : 26);

std::array<PhysicalWindow, 2>& windows() {
    // Never freed: pointers into the windows stay valid until the process ends.
    static auto& all = *new std::array<PhysicalWindow, 2>{
        PhysicalWindow(HostBoard::ddrMemory, 0x80000000, 0x80000000, mappingStep),
        PhysicalWindow(HostBoard::switchRegisters, 0x02090000, 0x10000, mappingStep),
    };
    return all;
}

}  // namespace

int vask_cma_process_init() {
    return boardSetting(HostBoard::cmaErrorFile);
}

int vask_cma_phy_to_virt(unsigned int physical, void** virtualPointer) {
    auto* const window = std::ranges::find_if(
        windows(), [physical](const PhysicalWindow& candidate) { return candidate.contains(physical); });
    if (virtualPointer == nullptr || window == windows().end()) {
        return EFAULT;
    }
    return window->translate(physical, *virtualPointer);
}

int vask_security_is_secure_env(int* secure) {
    if (secure == nullptr) {
        return EFAULT;
    }
    const int error = boardSetting(HostBoard::secureErrorFile);
    if (error == 0) {
        *secure = boardSetting(HostBoard::secureFile);
    }
    return error;
}
