#pragma once

#include <string_view>

/// What the stand-in libraries and the simulated board agree on: files under /run/boardsim, each with one
/// decimal number. A missing file means the number in its comment.
namespace HostBoard {

constexpr std::string_view settingsDir = "/run/boardsim";

/// What vask_security_is_secure_env() stores; 0.
constexpr const char* secureFile = "/run/boardsim/secure";
/// What vask_security_is_secure_env() returns; 0.
constexpr const char* secureErrorFile = "/run/boardsim/secure_error";
/// What vask_cma_process_init() returns; 0.
constexpr const char* cmaErrorFile = "/run/boardsim/cma_error";

/// Shared memory (below /dev/shm) that plays the board's DDR window, byte 0 being physical 0x80000000.
constexpr const char* ddrMemory = "/board_ddr";
/// Shared memory that plays the switch subsystem's registers, byte 0 being physical 0x02090000.
constexpr const char* switchRegisters = "/board_switch_registers";

}  // namespace HostBoard
