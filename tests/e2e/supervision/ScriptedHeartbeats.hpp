#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "ScriptedPeer.hpp"

// Peers whose answers differ from cycle to cycle.

constexpr std::uint32_t proxyPort = 110;
constexpr std::uint32_t iwfPort = 120;

/// The response to a heartbeat request.
std::string heartbeatAnswer(const std::string& request, std::uint32_t portId, std::uint32_t status = 0);

/// The cycle that a request belongs to, counted from 1.
unsigned cycleOf(const std::string& request);

/// A peer's answer in a cycle: a status or nothing.
using Heartbeat = std::function<std::optional<std::uint32_t>(unsigned cycle)>;

/// Answers with these statuses.
ScriptedPeer::Answer heartbeats(std::uint32_t portId, const Heartbeat& heartbeat);

/// Healthy before the given cycle, and an error from then on.
Heartbeat healthyUntil(unsigned cycle);
