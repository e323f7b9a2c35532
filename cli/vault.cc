#include "cli/vault.h"

#include "cli/command_error.h"
#include "cli/output.h"

namespace devcfg {
namespace {

void check_read(int status) {
  if (status != metadata_vault::kVaultOk) {
    throw CommandError("the vault cannot be read", status);
  }
}

void require_not_empty(const std::string& value, const char* what) {
  if (value.empty()) {
    throw CommandError(std::string(what) + " must not be empty");
  }
}

// The library reports a vault that became unreadable in between as an empty one.
Json require_entries(Json document, std::size_t expected) {
  json_object* list = json_object_object_get(document.get(), "vault_list");
  if (list == nullptr || (expected > 0 && json_object_array_length(list) == 0)) {
    throw CommandError("the vault could not be read (--log shows why)");
  }
  return document;
}

}  // namespace

Vault::Vault() : store_(new CDataSource) {
  if (const int status = store_->init(); status != metadata_vault::kVaultOk) {
    throw CommandError("the vault cannot be opened", status);
  }
}

Vault::~Vault() { store_->release(); }

std::vector<DataSource> Vault::data_sources() const {
  std::vector<DataSource> found;
  check_read(store_->query_data_source("", "", found));
  return found;
}

std::optional<DataSource> Vault::find(const std::string& vault_id) const {
  require_not_empty(vault_id, "an identifier");  // "" would match every data source
  std::vector<DataSource> found;
  check_read(store_->query_data_source(vault_id, "", found));
  return found.empty() ? std::nullopt : std::optional(std::move(found.front()));
}

std::vector<Channel> Vault::channels_of_camera(const std::string& guid) const {
  require_not_empty(guid, "the guid of a camera");
  std::vector<Channel> found;
  check_read(store_->query_channel("", guid, found));
  return found;
}

DataSource stored_data_source(const std::string& vault_id) {
  std::optional<DataSource> found = Vault().find(vault_id);
  if (!found) {
    throw CommandError("there is no data source " + in_quotes(vault_id));
  }
  return *std::move(found);
}

Json all_data_sources_document() {
  const std::size_t expected = Vault().data_sources().size();
  int error = kDevcfgOk;
  return require_entries(Json(devcfg_get_all_device(&error, nullptr, nullptr, nullptr)), expected);
}

Json data_source_document(const std::string& vault_id) {
  std::string id = stored_data_source(vault_id).vault_id;
  int error = kDevcfgOk;
  return require_entries(Json(devcfg_get_device(id.data(), &error)), 1);
}

std::string not_stored(const std::string& change) {
  return change + " was not stored in the vault (--log shows why)";
}

}  // namespace devcfg
