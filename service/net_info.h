#pragma once

#include <cstddef>

#include "platform/export.h"

// Bytes that the address of get_nas_net_info needs: an IPv6 address with the name of an interface
// (45 characters, "%", 15 characters), a leading blank, the terminator, and one to spare.
inline constexpr std::size_t kNasAddressBytes = 64;

// Under which address and numbers this machine can be reached: the first entry of the platform's
// address list that is longer than 7 characters, and three numbers of the platform (the embedded
// one's are ports: platform/platform_layer.h). A blank after a comma of the list belongs to the
// entry.
//
// `ip`: a buffer of at least kNasAddressBytes. Every address fits whole; a longer entry, which is
//   none, is cut to fit and logged. Left as it is when no entry is longer than 7 characters, which
//   is no failure: set it to "" before the call.
// `share_value_1`, `app_value`, `share_value_2`: written on success; `app_value` is 0 when the
//   platform does not know it.
// Each may be null when it is not wanted.
//
// Returns 0; or, with nothing written, kDevcfgAuthFailed, kDevcfgShareAddressFailed, or
// kDevcfgAddressListEmpty.
ORVANEIP_API int get_nas_net_info(char* ip, int* share_value_1, int* app_value, int* share_value_2);

// Writes a new device identifier into `id`, a buffer of at least kDeviceIdBytes
// (foundation/identifiers.h). Returns 0. Null is left alone. Reads no network information.
ORVANEIP_API int devcfg_get_net_info(char* id);
