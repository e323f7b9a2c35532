// Data sources as one JSON document.
//
// The document, its keys in this order:
//   {"vault_list": [{"vault_id", "vault_name", "description", "type": string, "index": int,
//     "enable": boolean, "status": object,
//     "filter": [{"type": int, "target", "result", "name": string}],
//     "channel_guid_list": [{"channel_index": int, "guid", "name": string}]}]}
// Data sources, filters and channels are in the order in which the vault database returns them
// (platform/vault_database.h). A database that cannot be read gives an empty list and a log line.
//
// The caller owns the returned document and releases it with json_object_put. When there is no
// memory for it, the result is null and `error_code` receives kDevcfgFailed.
#pragma once

#include "platform/export.h"

struct json_object;

// Returns one data source; "vault_list" is empty when none has this identifier. The "status" is
// {"last_recv_time_str": milliseconds since 1970 (UTC) in decimal digits, "" for none}.
// Writes 0 to `error_code` (which may be null), or returns null and writes kDevcfgDeviceIdMissing
// when `vault_id` is null or empty.
ORVANEIP_API json_object* devcfg_get_device(char* vault_id, int* error_code);

// Returns all data sources. The "status" is {"last_recv_date": local date and time, "server_time":
// that wall clock in milliseconds as if it were UTC, by the zone's standard offset}, or
// {"last_recv_date": ""} when nothing has been received. Writes 0 to `error_code` (which may be
// null). The three strings are not read.
ORVANEIP_API json_object* devcfg_get_all_device(int* error_code, char* ignored_text_1,
                                                char* ignored_text_2, char* ignored_text_3);
