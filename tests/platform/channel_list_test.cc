#include <gtest/gtest.h>

#include "tests/support/vault_calls.h"

TEST(ChannelList, EachKindOfRefusalHasItsStatus) {
  using namespace metadata_vault;
  struct Row {
    std::string list;
    int status;
  };
  const auto channel = [](const std::string& guid, const std::string& index, const char* name) {
    return "{\"guid\":" + guid + ",\"channel_index\":" + index + ",\"name\":" + name + "}";
  };
  const std::string good = channel("\"g\"", "0", "\"\"");
  const Row kRows[] = {
      {"[]", 0},
      {"[" + good + "," + channel("\"h\"", "2147483647", "\"\"") + "]", 0},
      {"", kChannelListNotArray},
      {good, kChannelListNotArray},
      {"[null]", kChannelNotObject},
      {"[" + good + ",[]]", kChannelNotObject},
      {"[{\"channel_index\":0,\"name\":\"n\"}]", kChannelGuidInvalid},
      {"[" + channel("\"\"", "0", "\"\"") + "]", kChannelGuidInvalid},
      {"[" + channel("7", "0", "\"\"") + "]", kChannelGuidInvalid},
      {"[" + channel("\"g\\u0000h\"", "0", "\"\"") + "]", kChannelGuidInvalid},
      {"[{\"guid\":\"g\",\"name\":\"n\"}]", kChannelIndexInvalid},
      {"[" + channel("\"g\"", "-1", "\"\"") + "]", kChannelIndexInvalid},
      {"[" + channel("\"g\"", "\"1\"", "\"\"") + "]", kChannelIndexInvalid},
      {"[" + channel("\"g\"", "1.0", "\"\"") + "]", kChannelIndexInvalid},
      {"[" + channel("\"g\"", "2147483648", "\"\"") + "]", kChannelIndexInvalid},
      {"[" + channel("\"g\"", "18446744073709551615", "\"\"") + "]", kChannelIndexInvalid},
      {"[{\"guid\":\"g\",\"channel_index\":1}]", kChannelNameInvalid},
      {"[" + channel("\"g\"", "0", "null") + "]", kChannelNameInvalid},
      {"[" + channel("\"g\"", "0", "\"\\u0000\"") + "]", kChannelNameInvalid},
      {"[" + good + "," + channel("\"g\"", "1", "\"\"") + "]", kChannelGuidRepeated},
      {"[" + good + "," + channel("\"h\"", "0", "\"\"") + "]", kChannelIndexRepeated},
  };
  for (const Row& row : kRows) {
    EXPECT_EQ(check_channel_list_valid(test::Json(row.list)), row.status) << row.list;
  }
}
