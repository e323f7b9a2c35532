#include "platform/embedded/vault/connection_state.h"

#include "base/failure.h"
#include "platform/embedded/vault/vault_location.h"
#include "platform/embedded/vault/vault_schema.h"
#include "platform/log_sinks.h"
#include "platform/vault_database.h"

namespace orvaneplatform {

metadata_vault::VaultStatus report_failure(const char* operation,
                                           metadata_vault::VaultStatus status,
                                           const std::string& reason) {
  orvane_log_debug("[vaultdb] %s failed with status %d: %s", operation, static_cast<int>(status),
                   reason.c_str());
  return status;
}

}  // namespace orvaneplatform

namespace metadata_vault {

using orvaneplatform::report_failure;
namespace engine = orvaneplatform::sqlite_engine;

VaultStatus VaultConnectionState::open_file(const std::string& path) {
  orvaneplatform::create_vault_file(path);
  try {
    engine::open(sql_, path, wait_);
    const int version = engine::schema_version(sql_);
    if (version > orvaneplatform::kSchemaVersion) {
      return report_failure("init", kVaultNewerSchema,
                            path + ": schema version " + std::to_string(version) + " is newer");
    }
    if (version < orvaneplatform::kSchemaVersion) {
      orvaneplatform::upgrade_schema(sql_);
    }
    return kVaultOk;
  } catch (const soci::soci_error& error) {
    return report_failure("init", engine::status_of(sql_, error),
                          path + ": " + error.get_error_message());
  }
}

VaultStatus VaultConnectionState::open_database() {
  try {
    return open_file(orvaneplatform::vault_file_path());
  } catch (const base::Failure& failure) {
    return report_failure("init", static_cast<VaultStatus>(failure.status()), failure.what());
  }
}

VaultStatus VaultConnectionState::open() {
  status_ = open_database();
  return status_;
}

}  // namespace metadata_vault

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
