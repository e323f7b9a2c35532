// When metadata was last received from a data source.
#pragma once

#include <cstdint>

#include "platform/export.h"

// Stores `time_ms`, in milliseconds since 1970 (UTC), as the time of the last metadata received
// from the data source `vault_id`, and nothing else of it: a change of its name at the same time is
// kept. A time that is not later than the stored one changes nothing.
//
// Returns 0; kDevcfgVaultIdMissing when `vault_id` is null or empty; or a status of
// platform/vault_status.h: kVaultNotFound when there is no such data source, kVaultUnsupported when
// the platform cannot do it.
ORVANEIP_API int devcfg_set_last_recv_time(const char* vault_id, std::int64_t time_ms);
