// The open connection of a vault database object, and the door through which every operation's
// failure leaves: a status and a log line.
#pragma once

#include <soci/soci.h>

#include <memory>
#include <string>

#include "platform/embedded/vault/sqlite/sqlite_engine.h"
#include "platform/embedded/vault/transaction.h"
#include "platform/vault_status.h"

namespace orvaneplatform {

// Logs the failure of `operation` and returns `status`.
metadata_vault::VaultStatus report_failure(const char* operation,
                                           metadata_vault::VaultStatus status,
                                           const std::string& reason);

}  // namespace orvaneplatform

namespace metadata_vault {

class VaultConnectionState {
 public:
  // Opens the vault database and brings its schema up to date. On failure every operation answers
  // with the same status.
  VaultStatus open();

  VaultStatus status() const { return status_; }
  soci::session& sql() { return sql_; }

 private:
  VaultStatus open_database();
  VaultStatus open_file(const std::string& path);

  VaultStatus status_ = kVaultNotOpen;
  orvaneplatform::sqlite_engine::LockWait wait_;  // before the session, which uses it to its end
  soci::session sql_;
};

}  // namespace metadata_vault

namespace orvaneplatform {

using VaultState = std::unique_ptr<metadata_vault::VaultConnectionState>;

template <typename Transaction, typename Work>
metadata_vault::VaultStatus run_in(const VaultState& state, const char* operation, Work& work) {
  using namespace metadata_vault;
  const VaultStatus opened = state != nullptr ? state->status() : kVaultNotOpen;
  if (opened != kVaultOk) {
    return report_failure(operation, opened, "the vault database is not open");
  }
  soci::session& sql = state->sql();
  try {
    Transaction transaction(sql);
    if (const VaultStatus status = work(sql); status != kVaultOk) {
      return report_failure(operation, status, "no such record");
    }
    transaction.commit();
    return kVaultOk;
  } catch (const soci::soci_error& error) {
    return report_failure(operation, sqlite_engine::status_of(sql, error),
                          error.get_error_message());
  }
}

// Run `work(sql)` in a transaction. `work` returns kVaultOk, or kVaultNotFound: then nothing is
// changed. Every failure is logged under the name of `operation`.
template <typename Work>
metadata_vault::VaultStatus read_vault(const VaultState& state, const char* operation, Work work) {
  return run_in<ReadTransaction>(state, operation, work);
}
template <typename Work>
metadata_vault::VaultStatus write_vault(const VaultState& state, const char* operation, Work work) {
  return run_in<WriteTransaction>(state, operation, work);
}

}  // namespace orvaneplatform
