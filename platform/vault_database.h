// The records of the vault database, and the contract of the vault database library that stores
// them. The library uses the database through these classes only. The embedded platform implements
// them; a device may bring its own implementation, and so may a test.
//
// What the library relies on, for every operation:
//  - The order of a call is: construct with new, init() once, operations, release() once, delete.
//    Two objects may be open at the same time in one thread. Objects share nothing, so any number
//    of threads may work at once, each on its own object.
//  - Each operation takes effect by itself: once it has returned 0, its change is durable, and a
//    later failure does not undo it. There is no transaction over several operations.
//  - Texts are byte strings, compared byte for byte. Results are appended to lists, which are not
//    emptied first.
//  - A failed operation returns a non-zero status (the embedded ones: platform/vault_status.h),
//    changes nothing and appends nothing. After a failed init() every operation fails; in the
//    embedded database with the status of init(). The library reads the statuses of
//    insert_data_source, remove_metadata and check_channel_list_valid only, so the implementation
//    has to log every other failed write.
//
// The embedded vault database is an SQLite file: the one that the environment variable
// ORVANE_VAULT names as a path or as sqlite:///PATH, or /var/lib/orvane/vault.db. The first change
// creates it with mode 0600, whatever the umask, and the directories above it with mode 0755;
// created by root, they get the owner and group of the directory that they are in. A vault that
// does not exist has no records, and reading it creates nothing. A writer waits at most kLockWaitMs
// for another writer; readers wait for nobody. A file that is not a vault database, holds anything
// but a vault's tables, is damaged, or was written by a newer version is never changed; an older
// schema is upgraded by the first change. Every failure is logged, with the tag "[vaultdb]".
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/export.h"
#include "platform/vault_limits.h"
#include "platform/vault_status.h"

struct json_object;

namespace metadata_vault {

// One text-filter rule of a data source.
struct Filter {
  std::string record_id;              // the database's key of the stored record
  std::string vault_id;               // the data source that has the filter
  std::int32_t type = kNoFilterType;  // kind of rule
  std::string target;                 // the text to find
  std::string result;                 // the text that replaces it
  std::string name;                   // for people
};

// One camera channel of a data source.
struct Channel {
  std::string record_id;            // the database's key; set on records that a query returns
  std::string vault_id;             // the data source that has the channel
  std::int32_t channel_index = -1;  // its number within the data source
  std::string guid;                 // the camera; several data sources may have it
  std::string name;                 // for people
};

// One data source, and so one vault.
struct DataSource {
  std::string record_id;  // the database's key; the library neither sets nor reads it
  std::string vault_id;   // unique
  std::string type;
  std::string vault_name;  // up to kVaultNameBytes - 1 bytes reach every caller whole
  bool enable = true;
  std::int32_t index = -1;          // position in the vault list; unique when not negative
  std::string description;          // up to kDescriptionBytes - 1 bytes reach every caller whole
  std::int64_t last_recv_time = 0;  // milliseconds since 1970 (UTC); 0: nothing received
  std::vector<Filter> filter;
  std::vector<Channel> channel_guid_list;
};

class VaultConnectionState;  // defined by the implementation

}  // namespace metadata_vault

// One connection to the vault database.
class ORVANEIP_API CMetaDataVaultDB {
 public:
  CMetaDataVaultDB();
  virtual ~CMetaDataVaultDB();
  CMetaDataVaultDB(const CMetaDataVaultDB&) = delete;
  CMetaDataVaultDB& operator=(const CMetaDataVaultDB&) = delete;

  // Opens the vault database for this object. Does nothing when it is open.
  int init();

  // Closes what init() opened. Does nothing when nothing is open.
  int release();

 protected:
  std::unique_ptr<metadata_vault::VaultConnectionState> state_;  // null: not open
};

// The data sources with their channels and filters.
class ORVANEIP_API CDataSource : public CMetaDataVaultDB {
 public:
  CDataSource();
  ~CDataSource() override;

  // Appends the data sources with this `vault_id` and this `vault_name`; an empty argument matches
  // every value. Each record has its complete `filter` and `channel_guid_list`. The embedded
  // database orders data sources by `index`, channels by `channel_index` and filters as they were
  // stored, and reads all of them in the same state of the database.
  int query_data_source(const std::string& vault_id, const std::string& vault_name,
                        std::vector<metadata_vault::DataSource>& found);

  // Appends all data sources in ascending order of `index`. Their `filter` and `channel_guid_list`
  // may be empty; in the embedded database they are.
  int query_data_source_sort_by_index(std::vector<metadata_vault::DataSource>& found);

  // Stores a new data source from `vault_id`, `type`, `vault_name`, `enable`, `index` and
  // `description`. The embedded database refuses a `vault_id` that is stored, an `index` of 0 or
  // above that is stored, and a data source beyond kMaxDataSources.
  int insert_data_source(const metadata_vault::DataSource& data_source);

  // Replaces `type`, `vault_name`, `enable`, `index`, `description` and `last_recv_time` of the
  // data source with this `vault_id`. Its filters and channels do not change.
  int update_data_source(const metadata_vault::DataSource& data_source);

  // Removes the data source with this `vault_id`. The embedded database removes its filters and
  // channels as well, all or nothing.
  int remove_data_source(const metadata_vault::DataSource& data_source);

  // Stores a new channel from `vault_id`, `channel_index`, `guid` and `name`.
  int insert_channel(const metadata_vault::Channel& channel);

  // Replaces the channel that `record_id` names, as query_channel returned it.
  int update_channel(const metadata_vault::Channel& channel);

  // Appends the channels with this `vault_id` and this `guid`; an empty argument matches every
  // value.
  int query_channel(const std::string& vault_id, const std::string& guid,
                    std::vector<metadata_vault::Channel>& found);

  // Removes the channels with this `guid` from every data source. Succeeds when there are none.
  int remove_channel_by_guid(const std::string& guid);

  // Removes the channels of this data source. Succeeds when there are none.
  int remove_channel_by_vault_id(const std::string& vault_id);

  // Stores a new filter from `vault_id`, `type`, `target`, `result` and `name`.
  int insert_filter(const metadata_vault::Filter& filter);

  // Removes the filters of this data source. Succeeds when there are none.
  int remove_filter_by_vault_id(const std::string& vault_id);

  // Appends the filters of this data source in the order in which they were stored.
  int query_filter(const std::string& vault_id, std::vector<metadata_vault::Filter>& found);
};

// The stored metadata.
class ORVANEIP_API CMetadata : public CMetaDataVaultDB {
 public:
  CMetadata();
  ~CMetadata() override;

  // Removes the metadata with this key from its vault; the embedded database returns
  // kVaultNotFound when there is no such metadata.
  int remove_metadata(std::string key);
};

// Returns 0 when `channel_list` is a valid channel list, otherwise a status for the first fault.
// The embedded database accepts an array of objects with a non-empty string "guid", an integer
// "channel_index" of 0 or above and a string "name"; no guid and no index may repeat within the
// list. Null is not an array.
ORVANEIP_API int check_channel_list_valid(json_object* channel_list);
