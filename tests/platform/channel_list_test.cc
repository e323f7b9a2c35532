#include <gtest/gtest.h>

#include <regex>

#include "tests/support/vault_calls.h"

TEST(ChannelList, EachKindOfRefusalHasItsStatus) {
  using namespace metadata_vault;
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
  for (const auto& [status, lists] : kRows) {
    for (std::string list : lists) {
      for (const auto& [letter, text] :
           {std::pair("G", "'guid':"), std::pair("N", "'name':"),
            std::pair("I", "'channel_index':"), std::pair("'", "\"")}) {
        list = std::regex_replace(list, std::regex(letter), text);
      }
      EXPECT_EQ(check_channel_list_valid(test::Json(list)), status) << list;
    }
  }
}
