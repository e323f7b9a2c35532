#include <gtest/gtest.h>

#include "orvaneip.h"
#include "tests/support/captured_log.h"

namespace {

// What the platform answers.
struct Platform {
  int auth, app, share;
  const char* ip_list;
};
Platform platform{};

struct Answer {
  int result = 0;
  std::string ip = std::string(kNasAddressBytes + 16, '!');
  std::vector<int> numbers = {-77, -77, -77};

  Answer() { result = get_nas_net_info(ip.data(), &numbers[0], &numbers[1], &numbers[2]); }
  std::string text() const {
    EXPECT_EQ(ip.substr(kNasAddressBytes), std::string(16, '!'));
    return ip[0] == '!' ? "(untouched)" : ip.c_str();
  }
};

}  // namespace

int PAL_auth_get_auth(t_auth& auth) {
  auth.identity = "sid-1";
  return platform.auth;
}

int PAL_network_get_app_info(const t_auth& auth, const t_network_app_info& /*question*/,
                             t_network_app_info& answer) {
  EXPECT_EQ(auth.identity, "sid-1");
  answer.app_value = 22;
  return platform.app;
}

int PAL_system_get_share_addr(const t_auth& auth, const t_system_share_addr& /*question*/,
                              t_system_share_addr& answer) {
  EXPECT_EQ(auth.identity, "sid-1");
  answer.share_value_1 = 11;
  answer.share_value_2 = -33;
  answer.ip_list = platform.ip_list;
  return platform.share;
}

TEST(NasNetInfo, TakesTheFirstEntryLongerThanSevenCharacters) {
  const std::string longest = " fd00:1111:2222:3333:4444:5555:255.255.255.255%enp0s31f6-vlan1";
  const std::string filling(kNasAddressBytes - 1, 'a');
  const std::pair<std::string, std::string> kRows[] = {
      {"192.168.1.10, 10.0.0.5", "192.168.1.10"},
      {"1.2.3.4,10.0.0.25", "10.0.0.25"},
      {"1.2.3.4, 10.0.0.25", " 10.0.0.25"},
      {",,1.2.3.4,,,10.0.0.25,,", "10.0.0.25"},
      {"1.2.3.4", "(untouched)"},
      {"1.2.3.4,::1,", "(untouched)"},
      {"1.2.3.45", "1.2.3.45"},
      {"1.2.3.4," + longest, longest},
      {filling, filling},
      {filling + "aa,10.0.0.25", filling},
  };
  for (const auto& [list, ip] : kRows) {
    platform = {0, 0, 0, list.c_str()};
    const Answer answer;
    EXPECT_EQ(answer.result, 0);
    EXPECT_EQ(answer.text(), ip) << list;
    EXPECT_EQ(answer.numbers, (std::vector{11, 22, -33}));
  }
  EXPECT_EQ(get_nas_net_info(nullptr, nullptr, nullptr, nullptr), 0);
}

TEST(NasNetInfo, TellsWhatThePlatformDoesNotGive) {
  struct Row {
    Platform platform;
    unsigned int result;
    std::vector<std::string> lines;
  };
  const std::string tag = "[get_nas_net_info](N) ";
  const std::string no_app = tag + "PAL_network_get_app_info failed";
  const Row kRows[] = {
      {{1, 1, 1, "10.0.0.25"}, 0xC4070401, {tag + "get sid by PAL_auth_get_auth failed"}},
      {{0, 0, -1, "10.0.0.25"}, 0xC4070402, {tag + "get NAS http info failed"}},
      {{0, 1, 0, ""}, 0xC4070404, {no_app, tag + "ip list is empty"}}};
  for (const Row& row : kRows) {
    test::take_log();
    platform = row.platform;
    const Answer answer;
    EXPECT_EQ(answer.result, static_cast<int>(row.result));
    EXPECT_EQ(answer.text(), "(untouched)");
    EXPECT_EQ(answer.numbers, std::vector(3, -77));
    EXPECT_EQ(test::take_product_log(), row.lines);
  }
  platform = {0, -5, 0, "10.0.0.25"};
  EXPECT_EQ(Answer().numbers, (std::vector{11, 0, -33}));
}

TEST(NetInfo, IsAFreshIdentifier) {
  std::string ids[] = {std::string(40, '#'), std::string(40, '#')};
  EXPECT_EQ(devcfg_get_net_info(ids[0].data()), 0);
  EXPECT_EQ(devcfg_get_net_info(ids[1].data()), 0);
  EXPECT_EQ(ids[0].substr(34), std::string("\0#####", 6));
  EXPECT_NE(ids[0], ids[1]);
  EXPECT_EQ(devcfg_get_net_info(nullptr), 0);
}
