// Removing one piece of metadata.
#pragma once

#include <cstddef>

#include "platform/export.h"

// Sizes in bytes of the buffers of metadata_remove, which are written to their end.
inline constexpr std::size_t kRemovedVaultIdBytes = 256;
inline constexpr std::size_t kRemovedDataTypeBytes = 128;

// Removes the metadata whose key is `metadata_id`. Fills `vault_id` (kRemovedVaultIdBytes) with the
// identifier of the built-in bookmark vault and `data_type` (kRemovedDataTypeBytes) with
// "BOOKMARK", followed by zeros; either may be null. `ignored_text` is not read.
//
// Always returns 0 and fills the buffers: a removal that fails, or a null `metadata_id`, is only
// logged. Programs that need the status call CMetadata (platform/vault_database.h).
ORVANEIP_API int metadata_remove(char* metadata_id, char* ignored_text, char* vault_id,
                                 char* data_type);
