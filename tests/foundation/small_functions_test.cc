#include <cstdlib>
#include <ctime>
#include <regex>
#include <set>

#include "tests/support/library.h"

TEST(Identifiers, ArePrefixAndFreshHexadecimalDigits) {
  std::set<std::string> seen;
  for (int i = 0; i < 1000; ++i) {
    const std::string both = create_device_id() + create_terminal_id();
    EXPECT_TRUE(std::regex_match(both, std::regex("ID[0-9A-F]{32}TID[0-9A-F]{32}"))) << both;
    seen.insert({both.substr(0, 34), both.substr(35)});
  }
  EXPECT_EQ(seen.size(), 2000U);
  EXPECT_EQ(kDeviceIdBytes, 35U);
}

TEST(LogConsole, AddsALineFeedAndExpandsOnce) {
  testing::internal::CaptureStdout();
  LogConsole("camera %s of %d", "50%s%n", 7);
  LogConsole("line\n");
  LogConsole("%s", std::string(20'000, 'x').c_str());
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "camera 50%s%n of 7\nline\n\n" + std::string(kLogMessageBytes - 1, 'x') + "\n");
}

TEST(LogDebug, HandsTheTextToTheDebugLogUnchanged) {
  test::take_log();
  LogDebug("[CSqlite] ExecSQL error: %s\n", "near \"%d%n\"");
  LogDebug("%s", std::string(kLogMessageBytes, 'x').c_str());
  const std::vector<std::string> expected = {"[CSqlite] ExecSQL error: near \"%d%n\"\n",
                                             std::string(kLogMessageBytes - 1, 'x')};
  EXPECT_EQ(test::take_debug_log(), expected);
}

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

TEST(Split, Table) {
  const std::pair<std::string, std::vector<std::string>> kRows[] = {{"", {}},
                                                                    {"NULL", {"NULL"}},
                                                                    {"a,,b", {"a", "", "b"}},
                                                                    {",a", {"", "a"}},
                                                                    {"a,", {"a"}},
                                                                    {"a,,", {"a", ""}},
                                                                    {",", {""}},
                                                                    {" a , b ", {" a ", " b "}}};
  for (const auto& [text, items] : kRows) {
    EXPECT_EQ(split(text, ','), items) << text;
    std::vector<std::string> expected = {"kept"};
    std::vector<std::string> list = expected;
    expected.insert(expected.end(), items.begin(), items.end());
    EXPECT_EQ(&split(text, ',', list), &list);
    EXPECT_EQ(list, expected);
  }
}

static std::time_t pretended_now = 0;

// The library asks this program for the time.
extern "C" __attribute__((visibility("default"))) std::time_t time(std::time_t* result) noexcept {
  return result != nullptr ? *result = pretended_now : pretended_now;
}

TEST(TimeZone, StandardOffsetAllYear) {
  const std::pair<const char*, long> kRows[] = {{"UTC", 0},
                                                {"America/New_York", -18000},
                                                {"Australia/Sydney", 36000},
                                                {"<+0330>-3:30", 12600},
                                                {"Europe/Berlin", 3600},
                                                {"Asia/Kathmandu", 20700}};
  constexpr std::time_t kJanuary = 1768478400;  // 2026-01-15 12:00 UTC
  constexpr std::time_t kJuly = 1784116800;     // 2026-07-15 12:00 UTC
  for (const auto& [zone, offset] : kRows) {
    setenv("TZ", zone, 1);
    for (const std::time_t now : {kJanuary, kJuly}) {
      pretended_now = now;
      EXPECT_EQ(get_timezone_diff(), offset) << zone << " at " << now;
    }
  }
}
