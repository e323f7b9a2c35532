#include "vault/metadata_remove.h"

#include <algorithm>
#include <string_view>

#include "foundation/result_codes.h"
#include "platform/log_sinks.h"
#include "platform/vault_database.h"
#include "vault/internal/vault_connection.h"

namespace {

constexpr std::string_view kBookmarkVaultId = "IDZELPROBUILDINVAULTBOOKMARKSERVICE";
constexpr std::string_view kBookmarkType = "BOOKMARK";

int remove_stored(const char* metadata_id) {
  if (metadata_id == nullptr) {
    return kDevcfgFailed;
  }
  const orvaneip::VaultConnection<CMetadata> vault;
  return vault->remove_metadata(metadata_id);
}

void fill_buffer(char* buffer, std::size_t size_bytes, std::string_view text) {
  if (buffer != nullptr) {
    std::fill(std::copy(text.begin(), text.end(), buffer), buffer + size_bytes, '\0');
  }
}

}  // namespace

int metadata_remove(char* metadata_id, char* /*ignored_text*/, char* vault_id, char* data_type) {
  if (const int status = remove_stored(metadata_id); status != kDevcfgOk) {
    orvane_log_debug("[libzelip](%s:%d) Remove data failed: %d", __func__, __LINE__, status);
  }
  fill_buffer(vault_id, kRemovedVaultIdBytes, kBookmarkVaultId);
  fill_buffer(data_type, kRemovedDataTypeBytes, kBookmarkType);
  return kDevcfgOk;
}
