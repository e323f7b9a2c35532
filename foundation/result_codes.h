// The result codes of the exported functions. All but the first two have the top byte 0xC4 and are
// negative as int. Programs compare and store these numbers: they must not change.
#pragma once

#include "platform/export.h"

enum DevcfgResult : int {
  kDevcfgOk = 0,
  kDevcfgFailed = -1,  // refused argument, unknown data source, or failure
  kDevcfgFiltered = static_cast<int>(0xC4000000),            // text filtering finished
  kDevcfgDeviceIdMissing = static_cast<int>(0xC4000004),     // devcfg_get_device
  kDevcfgNameTaken = static_cast<int>(0xC400000B),           // devcfg_modify_device
  kDevcfgVaultIdMissing = static_cast<int>(0xC4000400),      // the vault_id is null or empty
  kDevcfgAlreadyExists = static_cast<int>(0xC4010000),       // devcfg_add_device
  kDevcfgVaultListFull = static_cast<int>(0xC4010002),       // devcfg_add_device; kMaxDataSources
  kDevcfgRuleTypeMissing = static_cast<int>(0xC4070300),     // get_rule_list
  kDevcfgAuthFailed = static_cast<int>(0xC4070401),          // get_nas_net_info
  kDevcfgShareAddressFailed = static_cast<int>(0xC4070402),  // get_nas_net_info
  kDevcfgAddressListEmpty = static_cast<int>(0xC4070404),    // get_nas_net_info
};

// Returns the meaning of a result in words: one of the codes above, or a status of the vault
// database (platform/vault_status.h). The string is static, has no full stop and is never null. Any
// other number gives "unknown result".
ORVANEIP_API const char* devcfg_result_text(int result);
