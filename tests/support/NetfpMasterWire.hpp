#pragma once

#include <cstdint>
#include <string>
#include <string_view>

inline constexpr int unknownInterface = -1;  ///< an error code of the master

// The NetFP master's datagrams byte by byte.

/// A request of 148 bytes. The bytes after `body` are zero.
std::string masterRequest(std::uint32_t type, std::uint32_t id, std::string_view body);

/// The identifier in a request.
std::uint32_t idOfRequest(const std::string& request);

/// A response of 272 bytes to the request `id`.
std::string masterResponse(std::uint32_t id, std::int32_t errorCode, std::int32_t switchPort = 0);
