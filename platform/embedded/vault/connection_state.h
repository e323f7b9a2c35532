// The connection of a vault database object, and the one place where an operation's failure becomes
// a status and a log line.
#pragma once

#include <memory>
#include <string>

#include "base/failure.h"
#include "platform/embedded/vault/engine.h"
#include "platform/embedded/vault/transaction.h"
#include "platform/embedded/vault/vault_location.h"
#include "platform/vault_status.h"

namespace metadata_vault {

class VaultConnectionState {
 public:
  // Opens the vault database that ORVANE_VAULT names. A vault that does not exist is no failure:
  // it has no records, and the first write creates it. After a failure every operation returns the
  // same status.
  VaultStatus open();

  VaultStatus status() const { return status_; }

  // Returns the version of the stored schema; 0 when there is no vault. Throws base::Failure.
  int version();

  // Returns the connection for a transaction: to read when version() is above 0, to write after
  // prepare_to_write, which creates the vault or upgrades its schema. Throws base::Failure.
  orvaneplatform::Engine& engine() { return *engine_; }
  void prepare_to_write();

 private:
  void open_engine();

  VaultStatus status_ = kVaultNotOpen;
  orvaneplatform::VaultLocation location_;
  std::unique_ptr<orvaneplatform::Engine> engine_;  // null: there is no vault
  int version_ = 0;
};

}  // namespace metadata_vault

namespace orvaneplatform {

using VaultState = std::unique_ptr<metadata_vault::VaultConnectionState>;

// Logs the failure of `operation` and returns its status.
metadata_vault::VaultStatus report_failure(const char* operation, const base::Failure& failure);

// Runs `run_transaction(state)`, which throws base::Failure, unless the vault is not open.
template <typename RunTransaction>
metadata_vault::VaultStatus run_operation(const VaultState& state, const char* operation,
                                          RunTransaction run_transaction) {
  using namespace metadata_vault;
  try {
    const VaultStatus opened = state != nullptr ? state->status() : kVaultNotOpen;
    if (opened != kVaultOk) {
      throw base::Failure("", "the vault database is not open", opened);
    }
    run_transaction(*state);
    return kVaultOk;
  } catch (const base::Failure& failure) {
    return report_failure(operation, failure);
  }
}

// read runs `work(engine)` in a transaction, and does nothing when the schema is older than
// `version` or there is no vault. write creates the vault or upgrades its schema first. Both throw
// base::Failure; then nothing is changed.
template <typename Work>
void read(metadata_vault::VaultConnectionState& connection, int version, Work work) {
  if (connection.version() >= version) {
    ReadTransaction transaction(connection.engine());
    work(connection.engine());
    transaction.commit();
  }
}
template <typename Work>
void write(metadata_vault::VaultConnectionState& connection, Work work) {
  connection.prepare_to_write();
  WriteTransaction transaction(connection.engine());
  work(connection.engine());
  transaction.commit();
}

// The same as an operation: returns kVaultOk or the status of the failure, which is logged.
// change_vault is for work that only changes rows that exist: it does not create a vault, and its
// status is `missing` when there is none.
template <typename Work>
metadata_vault::VaultStatus read_vault(const VaultState& state, const char* operation, Work work) {
  return run_operation(state, operation, [&](metadata_vault::VaultConnectionState& connection) {
    read(connection, 1, work);
  });
}
template <typename Work>
metadata_vault::VaultStatus write_vault(const VaultState& state, const char* operation, Work work) {
  return run_operation(state, operation, [&](metadata_vault::VaultConnectionState& connection) {
    write(connection, work);
  });
}

template <typename Work>
metadata_vault::VaultStatus change_vault(const VaultState& state, const char* operation,
                                         metadata_vault::VaultStatus missing, Work work) {
  return run_operation(state, operation, [&](metadata_vault::VaultConnectionState& connection) {
    if (connection.version() > 0) {
      write(connection, work);
    } else if (missing != metadata_vault::kVaultOk) {
      throw base::Failure("", "there is no vault", missing);
    }
  });
}

}  // namespace orvaneplatform
