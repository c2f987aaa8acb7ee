#pragma once

#include <string_view>

/// The interface between the stand-in libraries and the simulated board: files in /run/boardsim, each with
/// one decimal number. A missing file counts as 0.
namespace HostBoard {

constexpr std::string_view settingsDir = "/run/boardsim";

/// The value that vask_security_is_secure_env() stores.
constexpr const char* secureFile = "/run/boardsim/secure";
/// The return value of vask_security_is_secure_env().
constexpr const char* secureErrorFile = "/run/boardsim/secure_error";
/// The return value of vask_cma_process_init().
constexpr const char* cmaErrorFile = "/run/boardsim/cma_error";

/// Shared memory object of the board's DDR window; byte 0 is physical address 0x80000000.
constexpr const char* ddrMemory = "/board_ddr";
/// Shared memory object of the switch subsystem's registers; byte 0 is physical address 0x02090000.
constexpr const char* switchRegisters = "/board_switch_registers";

}  // namespace HostBoard
