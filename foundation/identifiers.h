// New identifiers: a prefix and the 16 bytes of a fresh UUID as 32 digits of 0-9 and A-F.
#pragma once

#include <cstddef>
#include <string>

#include "platform/export.h"

// Bytes that a device identifier needs in a char buffer: "ID", 32 digits and the terminator.
inline constexpr std::size_t kDeviceIdBytes = 35;

// A new device identifier: "ID" and 32 digits, 34 characters.
ORVANEIP_API std::string create_device_id();

// A new terminal identifier: "TID" and 32 digits, 35 characters.
ORVANEIP_API std::string create_terminal_id();
