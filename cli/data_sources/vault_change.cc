#include "cli/data_sources/vault_change.h"

#include "cli/command_error.h"
#include "cli/output.h"

namespace devcfg {
namespace {

using metadata_vault::Filter;
using metadata_vault::kVaultOk;

// Channels and filters may be stored for an identifier without a data source; a new one would have
// them.
int remove_left_over_lists(const Vault& vault, const std::string& vault_id) {
  std::vector<Channel> channels;
  std::vector<Filter> filters;
  int status = vault->query_channel(vault_id, "", channels);
  if (status == kVaultOk && !channels.empty()) {
    status = vault->remove_channel_by_vault_id(vault_id);
  }
  if (status == kVaultOk) {
    status = vault->query_filter(vault_id, filters);
  }
  if (status == kVaultOk && !filters.empty()) {
    status = vault->remove_filter_by_vault_id(vault_id);
  }
  return status;
}

int insert_lists(const Vault& vault, const DataSource& data_source) {
  for (const Channel& channel : data_source.channel_guid_list) {
    if (const int status = vault->insert_channel(channel); status != kVaultOk) {
      return status;
    }
  }
  for (const Filter& filter : data_source.filter) {
    if (const int status = vault->insert_filter(filter); status != kVaultOk) {
      return status;
    }
  }
  return kVaultOk;
}

class ChangeInProgress {
 public:
  void remove(const DataSource& data_source) {
    check(vault_->remove_data_source(data_source), "removing", data_source);
    removed_.push_back(&data_source);
  }

  void add(const DataSource& data_source) {
    int status = remove_left_over_lists(vault_, data_source.vault_id);
    if (status == kVaultOk) {
      status = vault_->insert_data_source(data_source);
    }
    check(status, "storing", data_source);
    added_.push_back(&data_source);
    check(insert_rest(data_source), "storing", data_source);
  }

  // Undoes the change; returns what was done and undone, in words.
  std::string roll_back() {
    std::string left;
    const std::string done = pluralize(removed_.size(), "data source") + " removed and " +
                             std::to_string(added_.size()) + " added";
    for (const DataSource* data_source : added_) {
      if (vault_->remove_data_source(*data_source) != kVaultOk) {
        left += "\n  " + in_quotes(data_source->vault_id) + " is still stored";
      }
    }
    for (const DataSource* data_source : removed_) {
      if (vault_->insert_data_source(*data_source) != kVaultOk ||
          insert_rest(*data_source) != kVaultOk) {
        left += "\n  " + in_quotes(data_source->vault_id) + " is lost, or a part of it";
      }
    }
    return "\nuntil then: " + done +
           (left.empty() ? "; all of it was rolled back" : "; rolled back, except:" + left);
  }

 private:
  int insert_rest(const DataSource& data_source) {
    const int status = insert_lists(vault_, data_source);
    return status == kVaultOk && data_source.last_recv_time != 0
               ? vault_->update_data_source(data_source)
               : status;
  }

  static void check(int status, const char* step, const DataSource& data_source) {
    if (status != kVaultOk) {
      throw CommandError(std::string(step) + " " + in_quotes(data_source.vault_id) + " failed",
                         status);
    }
  }

  Vault vault_;
  std::vector<const DataSource*> removed_;
  std::vector<const DataSource*> added_;
};

}  // namespace

void apply(const VaultChange& change) {
  ChangeInProgress progress;
  try {
    for (const DataSource& data_source : change.removed) {
      progress.remove(data_source);
    }
    for (const DataSource& data_source : change.added) {
      progress.add(data_source);
    }
  } catch (const CommandError& error) {
    throw CommandError(error.what() + progress.roll_back());
  }
}

}  // namespace devcfg
