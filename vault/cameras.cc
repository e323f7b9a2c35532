#include "vault/cameras.h"

#include <vector>

#include "foundation/result_codes.h"
#include "platform/vault_database.h"
#include "vault/internal/vault_connection.h"

int notify_camera_removed(char* guid) {
  if (guid != nullptr) {
    const orvaneip::VaultConnection<CDataSource> vault;
    vault->remove_channel_by_guid(guid);
  }
  return kDevcfgOk;
}

int notify_camera_modified(char* guid, char* name, int /*ignored_number*/) {
  if (guid == nullptr || *guid == '\0' || name == nullptr) {
    return kDevcfgFailed;
  }
  const orvaneip::VaultConnection<CDataSource> vault;
  std::vector<metadata_vault::Channel> found;
  vault->query_channel("", guid, found);
  for (metadata_vault::Channel& channel : found) {
    channel.name = name;
    vault->update_channel(channel);
  }
  return kDevcfgOk;
}
