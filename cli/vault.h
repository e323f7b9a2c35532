// The vault as the commands see it: one that cannot be opened or read is a CommandError, never an
// empty list.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/json.h"
#include "orvaneip.h"

namespace devcfg {

using metadata_vault::Channel;
using metadata_vault::DataSource;

// An open connection to the vault database.
class Vault {
 public:
  Vault();
  ~Vault();
  Vault(const Vault&) = delete;
  Vault& operator=(const Vault&) = delete;

  CDataSource* operator->() const { return store_.get(); }

  // Returns every data source, by index, with its channels and filters: one consistent state.
  std::vector<DataSource> data_sources() const;

  // Returns the data source with this identifier, which must not be empty; nothing when it does not
  // exist.
  std::optional<DataSource> find(const std::string& vault_id) const;

  // Returns the channels of a camera in every data source. The guid must not be empty.
  std::vector<Channel> channels_of_camera(const std::string& guid) const;

 private:
  std::unique_ptr<CDataSource> store_;
};

// Returns the data source as it is stored now. Throws CommandError when it does not exist.
DataSource stored_data_source(const std::string& vault_id);

// Return the library's document of all data sources (vault/device_documents.h), or of one.
Json all_data_sources_document();
Json data_source_document(const std::string& vault_id);

// Returns the message for a change that was reported as done but is not in the vault.
std::string not_stored(const std::string& change);

}  // namespace devcfg
