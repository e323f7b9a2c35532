// What the embedded platform offers beyond its other contracts. A platform of a device's own may
// lack any of these functions: they are weak, so a program that uses one still loads, and has to
// compare its address with null first. The library's functions return kVaultUnsupported then.
//
// Each takes effect by itself and is durable once it has returned. Each returns 0 or a status of
// platform/vault_status.h, and logs a failure with the tag "[vaultdb]". Any number of threads may
// call at once.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/export.h"

#define ORVANEIP_WEAK __attribute__((weak))

// Stores the time of the last received metadata, in milliseconds since 1970 (UTC), of the data
// source `vault_id`, and nothing else of it. A time that is not later than the stored one changes
// nothing. kVaultNotFound when there is no such data source.
ORVANEIP_API ORVANEIP_WEAK int vault_set_last_recv_time(const std::string& vault_id,
                                                        std::int64_t time_ms);

// Makes the event active. Without effect when it is. Creates the vault when there is none.
ORVANEIP_API ORVANEIP_WEAK int aevt_add_event(const std::string& event_id);

// Appends the ids of the active events, in the order of their bytes; nothing after a failure. The
// events of an event file (platform/event_service.h) are included: they are moved into the vault.
ORVANEIP_API ORVANEIP_WEAK int aevt_list_events(std::vector<std::string>& event_ids);
