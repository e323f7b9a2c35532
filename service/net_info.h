#pragma once

#include <cstddef>

#include "platform/export.h"

// Size in bytes of a buffer for the address of get_nas_net_info: an IPv6 address with the name of
// an interface (45 + 1 + 15 characters), a leading space, the terminator, and one byte to spare.
inline constexpr std::size_t kNasAddressBytes = 64;

// Length of the shortest entry of the platform's address list that is taken for an address.
inline constexpr std::size_t kMinNasAddressLength = 8;

// Reads the address and the numbers under which other machines reach this one: the first entry of
// the platform's address list with at least kMinNasAddressLength characters, and three numbers
// (port numbers on the embedded platform: platform/platform_layer.h). A space after a comma of the
// list is part of the entry.
//
// `ip`: a buffer of at least kNasAddressBytes. Every address fits; a longer entry, which is not an
//   address, is cut to fit and logged. Not written when every entry is shorter than
//   kMinNasAddressLength, which is not a failure: set it to "" before the call.
// `share_value_1`, `app_value`, `share_value_2`: written on success; `app_value` is 0 when the
//   platform does not know it.
// Each may be null.
//
// Returns 0; or kDevcfgAuthFailed, kDevcfgShareAddressFailed or kDevcfgAddressListEmpty, and then
// nothing is written.
ORVANEIP_API int get_nas_net_info(char* ip, int* share_value_1, int* app_value, int* share_value_2);

// Writes a new device identifier into `id`, a buffer of at least kDeviceIdBytes
// (foundation/identifiers.h). Returns 0. Does nothing when `id` is null. Reads no network
// information.
ORVANEIP_API int devcfg_get_net_info(char* id);
