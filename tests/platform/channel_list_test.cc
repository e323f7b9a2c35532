#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/vault_calls.h"

TEST(ChannelList, EachKindOfRefusalHasItsStatus) {
  using namespace metadata_vault;
  struct Row {
    std::string list;  // JSON, but for the quotation marks
    int status;
  };
  Row rows[] = {
      {"[]", 0},
      {"[{'guid':'g','channel_index':0,'name':''}]", 0},
      {"[{'guid':'g','channel_index':2147483647,'name':'n','more':[]}]", 0},
      {"", kChannelListNotArray},
      {"{'guid':'g','channel_index':0,'name':''}", kChannelListNotArray},
      {"[null]", kChannelNotObject},
      {"[{'guid':'g','channel_index':0,'name':''},[]]", kChannelNotObject},
      {"[{'channel_index':0,'name':''}]", kChannelGuidInvalid},
      {"[{'guid':'','channel_index':0,'name':''}]", kChannelGuidInvalid},
      {"[{'guid':7,'channel_index':0,'name':''}]", kChannelGuidInvalid},
      {"[{'guid':'g\\u0000h','channel_index':0,'name':''}]", kChannelGuidInvalid},
      {"[{'guid':'g','name':''}]", kChannelIndexInvalid},
      {"[{'guid':'g','channel_index':-1,'name':''}]", kChannelIndexInvalid},
      {"[{'guid':'g','channel_index':'1','name':''}]", kChannelIndexInvalid},
      {"[{'guid':'g','channel_index':1.0,'name':''}]", kChannelIndexInvalid},
      {"[{'guid':'g','channel_index':2147483648,'name':''}]", kChannelIndexInvalid},
      {"[{'guid':'g','channel_index':18446744073709551615,'name':''}]", kChannelIndexInvalid},
      {"[{'guid':'g','channel_index':1}]", kChannelNameInvalid},
      {"[{'guid':'g','channel_index':1,'name':null}]", kChannelNameInvalid},
      {"[{'guid':'g','channel_index':1,'name':'\\u0000'}]", kChannelNameInvalid},
      {"[{'guid':'g','channel_index':1,'name':''},{'guid':'g','channel_index':2,'name':''}]",
       kChannelGuidRepeated},
      {"[{'guid':'g','channel_index':1,'name':''},{'guid':'h','channel_index':1,'name':''}]",
       kChannelIndexRepeated},
  };
  for (Row& row : rows) {
    std::replace(row.list.begin(), row.list.end(), '\'', '"');
    EXPECT_EQ(check_channel_list_valid(test::Json(row.list)), row.status) << row.list;
  }
}
