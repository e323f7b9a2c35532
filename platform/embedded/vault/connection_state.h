// The open connection of a vault database object, and the one place where failures of operations
// become a status and a log line.
#pragma once

#include <soci/soci.h>

#include <memory>
#include <string>

#include "base/failure.h"
#include "platform/embedded/vault/sqlite/sqlite_engine.h"
#include "platform/embedded/vault/transaction.h"
#include "platform/vault_status.h"

namespace metadata_vault {

class VaultConnectionState {
 public:
  // Opens the vault database and upgrades its schema. On failure every operation returns the same
  // status.
  VaultStatus open();

  VaultStatus status() const { return status_; }
  soci::session& sql() { return sql_; }

 private:
  void open_file(const std::string& path);

  VaultStatus status_ = kVaultNotOpen;
  orvaneplatform::sqlite_engine::LockWait wait_;  // declared first: sql_ uses it until its end
  soci::session sql_;
};

}  // namespace metadata_vault

namespace orvaneplatform {

using VaultState = std::unique_ptr<metadata_vault::VaultConnectionState>;

// Logs the failure of `operation` and returns its status.
metadata_vault::VaultStatus report_failure(const char* operation, const base::Failure& failure);

// Returns the open session. Throws base::Failure with the status of init() when it is not open.
soci::session& require_open(const VaultState& state);

// Throws base::Failure with kVaultNotFound when a statement for one record changed no row.
void require_record(long long changed_rows);

template <typename Transaction, typename Work>
metadata_vault::VaultStatus run_in(const VaultState& state, const char* operation, Work& work) {
  try {
    soci::session& sql = require_open(state);
    sqlite_engine::throw_failures(sql, "", [&] {
      Transaction transaction(sql);
      work(sql);
      transaction.commit();
    });
    return metadata_vault::kVaultOk;
  } catch (const base::Failure& failure) {
    return report_failure(operation, failure);
  }
}

// Run `work(sql)` in a transaction, which is rolled back when `work` throws. A failure is logged
// with the name of `operation`.
template <typename Work>
metadata_vault::VaultStatus read_vault(const VaultState& state, const char* operation, Work work) {
  return run_in<ReadTransaction>(state, operation, work);
}
template <typename Work>
metadata_vault::VaultStatus write_vault(const VaultState& state, const char* operation, Work work) {
  return run_in<WriteTransaction>(state, operation, work);
}

}  // namespace orvaneplatform
