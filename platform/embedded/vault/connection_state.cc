#include "platform/embedded/vault/connection_state.h"

#include "platform/embedded/vault/engine_choice.h"
#include "platform/embedded/vault/vault_schema.h"
#include "platform/log_sinks.h"
#include "platform/vault_database.h"

namespace orvaneplatform {

metadata_vault::VaultStatus report_failure(const char* operation, const base::Failure& failure) {
  orvane_log_debug("[vaultdb] %s failed with status %d: %s", operation, failure.status(),
                   failure.what());
  return static_cast<metadata_vault::VaultStatus>(failure.status());
}

}  // namespace orvaneplatform

namespace metadata_vault {

void VaultConnectionState::open_engine() {
  engine_ = orvaneplatform::open_engine(location_);
  version_ = engine_ != nullptr ? orvaneplatform::check_schema(*engine_) : 0;
}

VaultStatus VaultConnectionState::open() {
  try {
    location_ = orvaneplatform::vault_location();
    open_engine();
    status_ = kVaultOk;
  } catch (const base::Failure& failure) {
    status_ = orvaneplatform::report_failure("init", failure);
  }
  return status_;
}

int VaultConnectionState::version() {
  if (version_ == 0) {
    open_engine();  // another process may have created it
  }
  return version_;
}

void VaultConnectionState::prepare_to_write() {
  if (version_ == orvaneplatform::kSchemaVersion) {
    return;
  }
  if (engine_ == nullptr) {
    orvaneplatform::create_database(location_);
    open_engine();
  }
  orvaneplatform::upgrade_schema(*engine_, version_);
  version_ = orvaneplatform::kSchemaVersion;
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
