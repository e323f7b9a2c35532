// Changing and removing a data source.
#pragma once

#include <vector>

#include "platform/export.h"
#include "platform/vault_limits.h"

struct json_object;

// Makes up to three independent edits of a data source, in this order: name and description,
// enabled state, channel list. An edit whose argument is null is not made.
//
// `vault_id`: the data source.
// `vault_name`, `description`: the new values, as json_object_get_string returns them. With an
//   empty name neither is changed; a name without a description clears the stored description.
// `channel_list`: a JSON array as for devcfg_add_device; it replaces all channels. Each channel is
//   stored by itself: a process killed during the call leaves those stored so far; call again.
// `enable`: the new state, as json-c reads a boolean.
// `old_vault_name` (kVaultNameBytes) and `old_description` (kDescriptionBytes): buffers for the
//   values before the change, filled whether or not the edits succeed; either may be null.
// `channel_indexes`: the "channel_index" of each stored channel is appended, in list order.
//
// Returns 0; kDevcfgVaultIdMissing when `vault_id` is null or empty; -1 when there is no such data
// source (buffers unchanged); kDevcfgNameTaken when another data source has the new name (nothing
// is edited); or the status of check_channel_list_valid (the earlier edits are stored, the channels
// unchanged). A change that the database cannot store is logged there and not reported here.
// Arguments named ignored_ are not read.
ORVANEIP_API int devcfg_modify_device(char* vault_id, json_object* ignored_object_1,
                                      json_object* vault_name, json_object* description,
                                      json_object* ignored_object_2, json_object* ignored_object_3,
                                      json_object* channel_list, json_object* ignored_object_4,
                                      json_object* enable, char* old_vault_name,
                                      char* old_description, std::vector<int>& channel_indexes);

// Removes a data source. `old_vault_name` and `old_description` receive its name and description,
// as above. Its stored metadata and its device node stay; the embedded database removes its
// channels and filters with it. Always returns 0; a null, empty or unknown `vault_id` changes
// nothing, the buffers included (devcfg_check_vault_exist reports whether it exists).
ORVANEIP_API int devcfg_remove_device(char* vault_id, char* old_vault_name, char* old_description);
