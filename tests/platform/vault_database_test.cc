#include <regex>

#include "tests/support/vault_calls.h"

using namespace metadata_vault;
using test::data_source;

TEST(VaultDatabase, RefusesWithAStatusAndALogLineAndChangesNothing) {
  const test::TempVault folder;
  test::OpenVault vault;
  EXPECT_EQ(CDataSource().remove_data_source(data_source("a", 0)), kVaultNotOpen);
  EXPECT_EQ(test::add("a", "a", R"([{"guid":"g","channel_index":1,"name":"n"}])"), 0);
  for (int i = 1; i < 127; ++i) {
    EXPECT_EQ(vault->insert_data_source(data_source(std::to_string(i), -1)), 0);
  }
  const std::string before = test::show();
  test::take_log();
  const std::pair<int, int> kRows[] = {
      {vault->insert_data_source(data_source("a", 5)), kVaultIdTaken},
      {vault->insert_data_source(data_source("d", 0)), kVaultIndexTaken},
      {vault->update_data_source(data_source("1", 0)), kVaultIndexTaken},
      {vault->update_data_source(data_source("A", 7)), kVaultNotFound},
      {vault->remove_data_source(data_source("d", 0)), kVaultNotFound},
      {vault->update_channel({"99", "a", 1, "g", "new"}), kVaultNotFound},
      {vault->update_channel({"1 ", "a", 1, "g", "new"}), kVaultNotFound},
      {vault->update_channel({"", "a", 1, "g", "new"}), kVaultNotFound},
  };
  const auto log = test::take_log();
  ASSERT_EQ(log.size(), std::size(kRows));
  for (std::size_t i = 0; i < log.size(); ++i) {
    EXPECT_EQ(kRows[i].first, kRows[i].second) << i;
    EXPECT_TRUE(log[i].starts_with("[vaultdb] ")) << log[i];
    EXPECT_NE(log[i].find(" failed with status " + std::to_string(kRows[i].second) + ": "),
              std::string::npos);
  }
  EXPECT_EQ(vault->init(), 0) << "is open already";
  EXPECT_EQ(vault->insert_channel({"", "of nobody", 1, "g", "n"}), 0);
  std::vector<DataSource> found;
  EXPECT_EQ(vault->query_data_source("a", "a", found) + vault->query_data_source("1", "a", found),
            0);
  EXPECT_EQ(found.size(), 1U);
  EXPECT_EQ(test::show(), before);
  EXPECT_EQ(vault->insert_data_source(data_source("128th", -1)), 0);
  EXPECT_EQ(vault->insert_data_source(data_source("more", -1)), kVaultFull);
}

TEST(ChannelList, EachKindOfRefusalHasItsStatus) {
  // G, I and N stand for the names of the three members.
  const std::pair<int, std::vector<std::string>> kRows[] = {
      {0, {"[]", "[{G'g',I0,N''}]", "[{G'g',I2147483647,N'n','more':[]}]"}},
      {kChannelListNotArray, {"", "{G'g',I0,N''}"}},
      {kChannelNotObject, {"[null]", "[{G'g',I0,N''},[]]"}},
      {kChannelGuidInvalid,
       {"[{I0,N''}]", "[{G'',I0,N''}]", "[{G7,I0,N''}]", "[{G'g\\u0000h',I0,N''}]"}},
      {kChannelIndexInvalid,
       {"[{G'g',N''}]", "[{G'g',I-1,N''}]", "[{G'g',I'1',N''}]", "[{G'g',I1.0,N''}]",
        "[{G'g',I2147483648,N''}]", "[{G'g',I18446744073709551615,N''}]"}},
      {kChannelNameInvalid, {"[{G'g',I1}]", "[{G'g',I1,Nnull}]", "[{G'g',I1,N'\\u0000'}]"}},
      {kChannelGuidRepeated, {"[{G'g',I1,N''},{G'g',I2,N''}]"}},
      {kChannelIndexRepeated, {"[{G'g',I1,N''},{G'h',I1,N''}]"}},
  };
  const std::pair<const char*, const char*> kNames[] = {
      {"G", "'guid':"}, {"N", "'name':"}, {"I", "'channel_index':"}, {"'", "\""}};
  for (const auto& [status, lists] : kRows) {
    for (std::string list : lists) {
      for (const auto& [letter, text] : kNames) {
        list = std::regex_replace(list, std::regex(letter), text);
      }
      EXPECT_EQ(check_channel_list_valid(test::Json(list)), status) << list;
    }
  }
}
