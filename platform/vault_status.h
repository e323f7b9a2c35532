// Statuses of the embedded vault database: what its operations and check_channel_list_valid
// return. The library passes the statuses of insert_data_source and check_channel_list_valid on to
// its callers unchanged; a platform with a vault database of its own may have other numbers.
// Programs store these numbers in their logs and compare them: they must not change.
#pragma once

namespace metadata_vault {

enum VaultStatus : int {
  kVaultOk = 0,
  kVaultNotOpen = 1,       // init() was not called, or release() was
  kVaultBusy = 2,          // another process held the write lock for longer than the wait
  kVaultIdTaken = 3,       // the vault_id is stored already
  kVaultIndexTaken = 4,    // the index (0 or above) belongs to another data source
  kVaultFull = 5,          // 128 data sources are stored
  kVaultNotFound = 6,      // no stored record is the one that was named
  kVaultReadOnly = 7,      // the database may be read only
  kVaultNoSpace = 8,       // the disk or a size limit is exhausted; nothing was stored
  kVaultDamaged = 9,       // the file is not a vault database, or a damaged one
  kVaultNewerSchema = 10,  // written by a newer version than this one understands
  kVaultUnreachable = 11,  // the file or server cannot be opened
  kVaultUnsupported = 12,  // ORVANE_VAULT names a kind of database that is not built in
  kVaultFailed = 13,       // any other failure; the log line has the database's words

  kChannelListNotArray = 101,   // not a JSON array
  kChannelNotObject = 102,      // an entry is not a JSON object
  kChannelGuidInvalid = 103,    // "guid" is missing, empty, not a string, or holds a NUL
  kChannelIndexInvalid = 104,   // "channel_index" is missing, no integer, below 0 or above int32
  kChannelNameInvalid = 105,    // "name" is missing, not a string, or holds a NUL
  kChannelGuidRepeated = 106,   // two entries have the same "guid"
  kChannelIndexRepeated = 107,  // two entries have the same "channel_index"
};

}  // namespace metadata_vault
