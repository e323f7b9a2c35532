#pragma once

#include "platform/export.h"

struct json_object;

// Adds a data source at the first free index of the vault list.
//
// `vault_id`: in and out, a buffer of at least kDeviceIdBytes (foundation/identifiers.h). It holds
//   the identifier of the new data source, which is used unchanged, or an empty string: then a new
//   identifier is written into it, also when the call fails later.
// `type`, `vault_name`, `description`: null counts as empty. The name is not compared with the
//   names of other data sources.
// `channel_list`: null, or a JSON array of {"guid": string, "channel_index": int, "name": string},
//   which is stored when check_channel_list_valid accepts it. It is checked after the data source
//   has been stored: when it is refused, or the process dies before the last channel is stored, the
//   data source exists without (some of) its channels; devcfg_modify_device can store them.
// `error_code`: may be null; set it to 0 before the call.
//
// Returns `vault_id` and leaves `error_code` unchanged, or returns null and writes the reason:
// kDevcfgAlreadyExists, kDevcfgVaultListFull (metadata_vault::kMaxDataSources are stored), a status
// of the vault database when it refuses the data source (kVaultIndexTaken when two processes add at
// the same moment: call again), a status of check_channel_list_valid, or kDevcfgVaultIdMissing when
// `vault_id` is null. Arguments named ignored_ are not read.
ORVANEIP_API char* devcfg_add_device(char* vault_id, char* type, char* ignored_text,
                                     char* vault_name, char* description,
                                     json_object* ignored_object_1, json_object* ignored_object_2,
                                     json_object* channel_list, int ignored_number,
                                     bool ignored_flag, bool enable, int* error_code);
