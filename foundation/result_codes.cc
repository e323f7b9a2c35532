#include "foundation/result_codes.h"

#include <algorithm>
#include <iterator>

#include "platform/vault_database.h"
#include "platform/vault_status.h"

namespace {

struct ResultText {
  int result;
  const char* text;
};

using namespace metadata_vault;

static_assert(kMaxDataSources == 128, "two texts below contain this number");

constexpr ResultText kTexts[] = {
    {kDevcfgOk, "success"},
    {kDevcfgFailed, "an argument is missing, or there is no such data source"},
    {kDevcfgFiltered, "text filtering finished"},
    {kDevcfgDeviceIdMissing, "no data source identifier was given"},
    {kDevcfgNameTaken, "another data source has this name"},
    {kDevcfgVaultIdMissing, "no data source identifier was given"},
    {kDevcfgAlreadyExists, "a data source with this identifier already exists"},
    {kDevcfgVaultListFull, "the vault list is full: 128 data sources are stored"},
    {kDevcfgRuleTypeMissing, "a filter has no type: the rules before it were read"},
    {kDevcfgAuthFailed, "the platform refused the authentication"},
    {kDevcfgShareAddressFailed, "the platform did not give the share address"},
    {kDevcfgAddressListEmpty, "the platform's address list is empty"},
    {kVaultNotOpen, "the vault database is not open"},
    {kVaultBusy, "the vault database stayed locked by another process"},
    {kVaultIdTaken, "the vault database holds a data source with this identifier"},
    {kVaultIndexTaken, "the vault database holds a data source with this index"},
    {kVaultFull, "the vault database is full: 128 data sources are stored"},
    {kVaultNotFound, "the vault database holds no such record"},
    {kVaultReadOnly, "the vault database cannot be written"},
    {kVaultNoSpace, "no space is left for the vault database"},
    {kVaultDamaged, "the file is damaged or not a vault database"},
    {kVaultNewerSchema, "the vault database was written by a newer version"},
    {kVaultUnreachable, "the vault database cannot be opened"},
    {kVaultUnsupported, "this kind of vault database is not built in"},
    {kVaultFailed, "the vault database failed"},
    {kChannelListNotArray, "the channel list is not a JSON array"},
    {kChannelNotObject, "an entry of the channel list is not a JSON object"},
    {kChannelGuidInvalid, "a channel has no \"guid\" that is a non-empty string"},
    {kChannelIndexInvalid, "a channel has no \"channel_index\" that is an integer of 0 or above"},
    {kChannelNameInvalid, "a channel has no \"name\" that is a string"},
    {kChannelGuidRepeated, "two channels of the list have the same \"guid\""},
    {kChannelIndexRepeated, "two channels of the list have the same \"channel_index\""},
};

}  // namespace

const char* devcfg_result_text(int result) {
  const auto* found =
      std::find_if(std::begin(kTexts), std::end(kTexts),
                   [result](const ResultText& row) { return row.result == result; });
  return found != std::end(kTexts) ? found->text : "unknown result";
}
