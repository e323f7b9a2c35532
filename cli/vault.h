// The vault as the commands see it: what cannot be opened or read is a Refusal, never an empty
// list.
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
using metadata_vault::Filter;

// An open connection to the vault database.
class Vault {
 public:
  Vault();
  ~Vault();
  Vault(const Vault&) = delete;
  Vault& operator=(const Vault&) = delete;

  CDataSource* operator->() const { return store_.get(); }

  // Every data source, by index, with its channels and filters: one moment's state.
  std::vector<DataSource> data_sources() const;

  // The data source with this identifier, which must not be empty; nothing when there is none.
  std::optional<DataSource> find(const std::string& vault_id) const;

  // The channels of a camera, in every data source. The guid must not be empty.
  std::vector<Channel> channels_of_camera(const std::string& guid) const;

 private:
  std::unique_ptr<CDataSource> store_;
};

// The data source as it is stored now. Refusal when there is none.
DataSource stored_data_source(const std::string& vault_id);

// The library's document of all data sources (vault/list_devices.h), or of one.
Json all_data_sources_document();
Json data_source_document(const std::string& vault_id);

// Why a change that was made without a complaint is not found in the vault.
std::string did_not_arrive(const std::string& change);

}  // namespace devcfg
