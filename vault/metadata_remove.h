// Removing one piece of metadata.
#pragma once

#include <cstddef>

#include "platform/export.h"

// Sizes in bytes of the buffers of metadata_remove, at the least.
inline constexpr std::size_t kRemovedVaultIdBytes = 256;
inline constexpr std::size_t kRemovedDataTypeBytes = 128;

// Removes the metadata whose key is `metadata_id`, and fills the buffers `vault_id` and `data_type`
// with the id of the built-in bookmark vault and "BOOKMARK", zeros to their end; a null buffer is
// skipped. `ignored_text` is not read.
//
// Returns 0, always: a removal that fails, or a null `metadata_id`, is only logged, and the buffers
// are filled all the same. Who needs the status calls CMetadata (platform/vault_database.h).
ORVANEIP_API int metadata_remove(char* metadata_id, char* ignored_text, char* vault_id,
                                 char* data_type);
