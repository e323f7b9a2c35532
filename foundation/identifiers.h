// New identifiers: a prefix and the 16 bytes of a new UUID as 32 digits of 0-9 and A-F.
#pragma once

#include <cstddef>
#include <string>

#include "platform/export.h"

// Size in bytes of a buffer for a device identifier: "ID", 32 digits and the terminator.
inline constexpr std::size_t kDeviceIdBytes = 35;

// Returns a new device identifier: "ID" and 32 digits, 34 characters.
ORVANEIP_API std::string create_device_id();

// Returns a new terminal identifier: "TID" and 32 digits, 35 characters.
ORVANEIP_API std::string create_terminal_id();
