#pragma once

#include "platform/export.h"

struct json_object;

// Adds a data source: stores it at the first free index of the vault list.
//
// `vault_id`: in and out, a char array of at least kDeviceIdBytes (foundation/identifiers.h). It
//   holds the identifier that the data source gets, used as it stands, or is empty: then a new one
//   is written into it, also when the call fails later.
// `type`, `vault_name`, `description`: NUL-terminated; null gives an empty text. Names are not
//   compared with those of other data sources.
// `channel_list`: null, or a JSON array of {"guid": string, "channel_index": int, "name": string};
//   an accepted list is stored. It is checked after the data source has been stored: when it is
//   refused, or the process dies before the last channel is stored, the data source stays without
//   (all of) its channels, and devcfg_modify_device can store them.
// `error_code`: may be null; set it to 0 before the call.
//
// Returns `vault_id` and leaves `error_code` alone, or returns null and writes the reason:
// kDevcfgAlreadyExists, kDevcfgVaultListFull, a status of the vault database when it refuses the
// data source (two processes that add at the same moment: kVaultIndexTaken; call again), a status
// of check_channel_list_valid, or kDevcfgVaultIdMissing when `vault_id` is null.
// All arguments stay the caller's, and the ones named ignored_ are not looked at.
ORVANEIP_API char* devcfg_add_device(char* vault_id, char* type, char* ignored_text,
                                     char* vault_name, char* description,
                                     json_object* ignored_object_1, json_object* ignored_object_2,
                                     json_object* channel_list, int ignored_number,
                                     bool ignored_flag, bool enable, int* error_code);
