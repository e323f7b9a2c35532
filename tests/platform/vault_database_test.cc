#include "tests/support/vault_calls.h"

using namespace metadata_vault;
using test::data_source;

TEST(VaultDatabase, RefusesWithAStatusAndALogLineAndChangesNothing) {
  const test::TempVault directory;
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
    const std::string line = " failed with status " + std::to_string(kRows[i].second) + ": ";
    EXPECT_TRUE(log[i].starts_with("[vaultdb] ") && log[i].find(line) < 40) << log[i];
  }
  EXPECT_EQ(vault->init(), 0) << "is open already";
  EXPECT_EQ(vault->insert_channel({"", "of nobody", 1, "g", "n"}), 0);
  std::vector<DataSource> found;
  EXPECT_EQ(vault->query_data_source("1", "a", found) + static_cast<int>(found.size()), 0);
  EXPECT_EQ(test::show(), before);
  EXPECT_EQ(vault->insert_data_source(data_source("128th", -1)), 0);
  EXPECT_EQ(vault->insert_data_source(data_source("more", -1)), kVaultFull);
}

TEST(ChannelList, EachKindOfRefusalHasItsStatus) {
  // ^, # and * are replaced by the names of the three members.
  const std::pair<int, std::vector<std::string>> kRows[] = {
      {0, {"[]", "[{^'g',#0,*''}]", "[{^'g',#2147483647,*'n','more':[]}]"}},
      {kChannelListNotArray, {"", "{^'g',#0,*''}"}},
      {kChannelNotObject, {"[null]", "[{^'g',#0,*''},[]]"}},
      {kChannelGuidInvalid,
       {"[{#0,*''}]", "[{^'',#0,*''}]", "[{^7,#0,*''}]", "[{^'g\\u0000h',#0,*''}]"}},
      {kChannelIndexInvalid,
       {"[{^'g',*''}]", "[{^'g',#-1,*''}]", "[{^'g',#'1',*''}]", "[{^'g',#1.0,*''}]",
        "[{^'g',#2147483648,*''}]", "[{^'g',#18446744073709551615,*''}]"}},
      {kChannelNameInvalid, {"[{^'g',#1}]", "[{^'g',#1,*null}]", "[{^'g',#1,*'\\u0000'}]"}},
      {kChannelGuidRepeated, {"[{^'g',#1,*''},{^'g',#2,*''}]"}},
      {kChannelIndexRepeated, {"[{^'g',#1,*''},{^'h',#1,*''}]"}},
  };
  for (const auto& [status, lists] : kRows) {
    for (std::string list : lists) {
      for (const std::string member : {"^'guid':", "#'channel_index':", "*'name':"}) {
        for (std::size_t at = 0; (at = list.find(member[0], at)) != std::string::npos;) {
          list.replace(at, 1, member, 1, std::string::npos);
        }
      }
      EXPECT_EQ(check_channel_list_valid(test::Json(list)), status) << list;
    }
  }
}
