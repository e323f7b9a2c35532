// Statuses of the embedded vault database: the results of its operations and of
// check_channel_list_valid. The library returns the statuses of insert_data_source and
// check_channel_list_valid to its callers unchanged; a platform with its own vault database may
// have other numbers. Programs store these numbers in their logs and compare them: they must not
// change.
#pragma once

namespace metadata_vault {

enum VaultStatus : int {
  kVaultOk = 0,
  kVaultNotOpen = 1,       // init() was not called, or release() was
  kVaultBusy = 2,          // another writer held the write lock for longer than kLockWaitMs
  kVaultIdTaken = 3,       // the vault_id is stored
  kVaultIndexTaken = 4,    // the index (0 or above) belongs to another data source
  kVaultFull = 5,          // kMaxDataSources data sources are stored
  kVaultNotFound = 6,      // there is no such record
  kVaultReadOnly = 7,      // the database is read-only
  kVaultNoSpace = 8,       // the disk is full or a size limit is reached; nothing was stored
  kVaultDamaged = 9,       // the file is damaged or not a vault database
  kVaultNewerSchema = 10,  // written by a newer version than this one
  kVaultUnreachable = 11,  // the file or server cannot be opened
  kVaultUnsupported = 12,  // ORVANE_VAULT names a kind of database that is not built in
  kVaultFailed = 13,       // any other failure; the log line has the database's message

  kChannelListNotArray = 101,  // not a JSON array
  kChannelNotObject = 102,     // an entry is not a JSON object
  kChannelGuidInvalid = 103,   // "guid" is missing, empty, not a string, or contains a NUL
  kChannelIndexInvalid = 104,  // "channel_index" is missing, not an integer, below 0 or above int32
  kChannelNameInvalid = 105,   // "name" is missing, not a string, or contains a NUL
  kChannelGuidRepeated = 106,  // two entries have the same "guid"
  kChannelIndexRepeated = 107,  // two entries have the same "channel_index"
};

}  // namespace metadata_vault
