#include "platform/embedded/vault/connection_state.h"

#include "platform/embedded/vault/vault_location.h"
#include "platform/embedded/vault/vault_schema.h"
#include "platform/log_sinks.h"
#include "platform/vault_database.h"

namespace metadata_vault {

void VaultConnectionState::open_file(const std::string& path) {
  namespace engine = orvaneplatform::sqlite_engine;
  orvaneplatform::create_database_file(path);
  engine::throw_failures(sql_, path, [&] {
    engine::open(sql_, path, wait_);
    const int version = engine::schema_version(sql_);
    if (version > orvaneplatform::kSchemaVersion) {
      throw base::Failure(path, "schema version " + std::to_string(version) + " is newer",
                          kVaultNewerSchema);
    }
    if (version < orvaneplatform::kSchemaVersion) {
      orvaneplatform::upgrade_schema(sql_);
    }
  });
}

VaultStatus VaultConnectionState::open() {
  try {
    open_file(orvaneplatform::vault_file_path());
    status_ = kVaultOk;
  } catch (const base::Failure& failure) {
    status_ = orvaneplatform::report_failure("init", failure);
  }
  return status_;
}

}  // namespace metadata_vault

namespace orvaneplatform {

using namespace metadata_vault;

VaultStatus report_failure(const char* operation, const base::Failure& failure) {
  orvane_log_debug("[vaultdb] %s failed with status %d: %s", operation, failure.status(),
                   failure.what());
  return static_cast<VaultStatus>(failure.status());
}

soci::session& require_open(const VaultState& state) {
  const VaultStatus status = state != nullptr ? state->status() : kVaultNotOpen;
  if (status != kVaultOk) {
    throw base::Failure("", "the vault database is not open", status);
  }
  return state->sql();
}

void require_record(long long changed_rows) {
  if (changed_rows <= 0) {
    throw base::Failure("", "no such record", kVaultNotFound);
  }
}

}  // namespace orvaneplatform

CMetaDataVaultDB::CMetaDataVaultDB() = default;
CMetaDataVaultDB::~CMetaDataVaultDB() = default;

int CMetaDataVaultDB::init() {
  if (state_ != nullptr && state_->status() == metadata_vault::kVaultOk) {
    return metadata_vault::kVaultOk;
  }
  state_ = std::make_unique<metadata_vault::VaultConnectionState>();
  return state_->open();
}

int CMetaDataVaultDB::release() {
  state_.reset();
  return metadata_vault::kVaultOk;
}
