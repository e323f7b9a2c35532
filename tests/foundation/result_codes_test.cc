#include <gtest/gtest.h>

#include <set>

#include "orvaneip.h"

// The numbers as programs have stored them.
TEST(ResultCodes, KeepTheirNumbersAndHaveWords) {
  const std::pair<int, int> kRows[] = {{kDevcfgOk, 0},
                                       {kDevcfgFailed, -1},
                                       {kDevcfgFiltered, -1006632960},
                                       {kDevcfgDeviceIdMissing, -1006632956},
                                       {kDevcfgNameTaken, -1006632949},
                                       {kDevcfgVaultIdMissing, -1006631936},
                                       {kDevcfgAlreadyExists, -1006567424},
                                       {kDevcfgVaultListFull, -1006567422},
                                       {kDevcfgRuleTypeMissing, -1006173440},
                                       {kDevcfgAuthFailed, -1006173183},
                                       {kDevcfgShareAddressFailed, -1006173182},
                                       {kDevcfgAddressListEmpty, -1006173180}};
  for (const auto& [code, number] : kRows) {
    EXPECT_EQ(code, number);
    EXPECT_STRNE(devcfg_result_text(code), "unknown result") << number;
  }
  using namespace metadata_vault;
  std::set<std::string> texts = {devcfg_result_text(4711), "unknown result"};
  for (int status = kVaultNotOpen; status <= kVaultFailed; ++status) {
    texts.insert(devcfg_result_text(status));
  }
  for (int status = kChannelListNotArray; status <= kChannelIndexRepeated; ++status) {
    texts.insert(devcfg_result_text(status));
  }
  EXPECT_EQ(texts.size(), 21U) << "each status has words of its own";
}
