#include <cstdlib>
#include <ctime>
#include <regex>
#include <set>

#include "tests/support/library.h"

TEST(Identifiers, AreAPrefixAndNewHexadecimalDigits) {
  std::set<std::string> seen;
  for (int i = 0; i < 1000; ++i) {
    const std::string both = create_device_id() + create_terminal_id();
    EXPECT_TRUE(std::regex_match(both, std::regex("ID[0-9A-F]{32}TID[0-9A-F]{32}"))) << both;
    seen.insert({both.substr(0, 34), both.substr(35)});
  }
  EXPECT_EQ(seen.size(), 2000U);
}

TEST(Logging, ExpandsOnceAndOnlyTheConsoleAddsALineFeed) {
  const std::string cut(kLogMessageBytes - 1, 'x');
  testing::internal::CaptureStdout();
  LogConsole("camera %s of %d", "50%s%n", 7);
  LogConsole("line\n");
  LogConsole("%ls", L"no text: \xD800");
  LogConsole("%s", (cut + cut).c_str());
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "camera 50%s%n of 7\nline\n\n\n" + cut + "\n");
  LogDebug("%s\n", "near \"%d%n\"");
  LogDebug("%s", (cut + "x").c_str());
  EXPECT_EQ(test::take_debug_log(), (std::vector<std::string>{"near \"%d%n\"\n", cut}));
}

// The numbers that programs have stored.
TEST(ResultCodes, KeepTheirNumbersAndHaveWords) {
  using Row = std::pair<int, int>;
  for (const auto& [code, number] :
       {Row(kDevcfgOk, 0), Row(kDevcfgFailed, -1), Row(kDevcfgFiltered, -1006632960),
        Row(kDevcfgDeviceIdMissing, -1006632956), Row(kDevcfgNameTaken, -1006632949),
        Row(kDevcfgVaultIdMissing, -1006631936), Row(kDevcfgAlreadyExists, -1006567424),
        Row(kDevcfgVaultListFull, -1006567422), Row(kDevcfgRuleTypeMissing, -1006173440),
        Row(kDevcfgAuthFailed, -1006173183), Row(kDevcfgShareAddressFailed, -1006173182),
        Row(kDevcfgAddressListEmpty, -1006173180)}) {
    EXPECT_EQ(code, number);
    EXPECT_STRNE(devcfg_result_text(code), devcfg_result_text(4711)) << number;
  }
  using namespace metadata_vault;
  for (int status = kVaultNotOpen; status <= kChannelIndexRepeated; ++status) {
    const bool is_gap = status > kVaultFailed && status < kChannelListNotArray;
    EXPECT_EQ(devcfg_result_text(status) == devcfg_result_text(4711), is_gap) << status;
  }
}

TEST(Split, ReturnsOrAppendsTheItems) {
  using Row = std::pair<std::string, std::vector<std::string>>;
  for (auto [text, items] :
       {Row("", {}), Row("NULL", {"NULL"}), Row("a,,b", {"a", "", "b"}), Row(",a", {"", "a"}),
        Row("a,", {"a"}), Row("a,,", {"a", ""}), Row(",", {""}), Row(" a , b ", {" a ", " b "})}) {
    EXPECT_EQ(split(text, ','), items) << text;
    std::vector<std::string> list = {"kept"};
    EXPECT_EQ(&split(text, ',', list), &list);
    items.insert(items.begin(), "kept");
    EXPECT_EQ(list, items);
  }
}

static std::time_t fake_now = 0;

// Replaces the system's function for the library.
extern "C" __attribute__((visibility("default"))) std::time_t time(std::time_t* result) noexcept {
  return result != nullptr ? *result = fake_now : fake_now;
}

TEST(TimeZone, IsTheStandardOffsetAllYear) {
  using Row = std::pair<const char*, long>;
  for (const auto& [zone, offset] :
       {Row("UTC", 0), Row("America/New_York", -18000), Row("Australia/Sydney", 36000),
        Row("<+0330>-3:30", 12600), Row("Europe/Berlin", 3600), Row("Asia/Kathmandu", 20700)}) {
    setenv("TZ", zone, 1);
    for (const std::time_t now : {1768478400, 1784116800}) {  // in January and in July
      fake_now = now;
      EXPECT_EQ(get_timezone_diff(), offset) << zone << " at " << now;
    }
  }
}
