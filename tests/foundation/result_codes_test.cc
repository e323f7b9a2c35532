#include <gtest/gtest.h>

#include <set>

#include "orvaneip.h"

// The numbers as programs have stored them.
TEST(ResultCodes, KeepTheirNumbersAndHaveWords) {
  struct Row {
    int code;
    int number;
  };
  const Row kRows[] = {
      {kDevcfgOk, 0},
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
      {kDevcfgAddressListEmpty, -1006173180},
  };
  for (const Row& row : kRows) {
    EXPECT_EQ(row.code, row.number);
    EXPECT_STRNE(devcfg_result_text(row.code), "unknown result") << row.number;
  }
}

TEST(ResultCodes, EveryStatusHasWordsOfItsOwn) {
  using namespace metadata_vault;
  std::set<std::string> texts;
  for (int status = kVaultNotOpen; status <= kVaultFailed; ++status) {
    texts.insert(devcfg_result_text(status));
  }
  for (int status = kChannelListNotArray; status <= kChannelIndexRepeated; ++status) {
    texts.insert(devcfg_result_text(status));
  }
  EXPECT_EQ(texts.size(), 20U);
  EXPECT_EQ(texts.count("unknown result"), 0U);
  EXPECT_STREQ(devcfg_result_text(4711), "unknown result");
}
