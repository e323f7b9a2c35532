#include "tests/support/library.h"

// The answers of the platform.
struct Platform {
  int auth, app, share;
  std::string ip_list;
};
static Platform platform;

int PAL_auth_get_auth(t_auth& auth) {
  auth.identity = "sid-1";
  return platform.auth;
}

int PAL_network_get_app_info(const t_auth& auth, const t_network_app_info& /*question*/,
                             t_network_app_info& answer) {
  answer.app_value = auth.identity == "sid-1" ? 22 : 0;
  return platform.app;
}

int PAL_system_get_share_addr(const t_auth& auth, const t_system_share_addr& /*question*/,
                              t_system_share_addr& answer) {
  answer.share_value_1 = auth.identity == "sid-1" ? 11 : 0;
  answer.share_value_2 = -33;
  answer.ip_list = platform.ip_list;
  return platform.share;
}

TEST(NetInfo, ReturnsTheFirstEntryLongerThanSevenCharactersAndCreatesANewIdentifier) {
  const std::string longest = " fd00:1111:2222:3333:4444:5555:255.255.255.255%enp0s31f6-vlan1";
  const std::string filling(kNasAddressBytes - 1, 'a');
  const std::string tag = "[get_nas_net_info](N) ";
  const std::string no_app = tag + "PAL_network_get_app_info failed";
  // The result, the address ("!" when it is not written) and the numbers; the messages.
  const std::tuple<Platform, std::string, std::vector<std::string>> kRows[] = {
      {{0, 0, 0, "192.168.1.10, 10.0.0.5"}, "0:192.168.1.10:11:22:-33", {}},
      {{0, 0, 0, "1.2.3.4, 10.0.0.25"}, "0: 10.0.0.25:11:22:-33", {}},
      {{0, 0, 0, ",,1.2.3.4,,,10.0.0.25,,"}, "0:10.0.0.25:11:22:-33", {}},
      {{0, 0, 0, "1.2.3.4,::1,"}, "0:!:11:22:-33", {}},
      {{0, 0, 0, "1.2.3.45"}, "0:1.2.3.45:11:22:-33", {}},
      {{0, 0, 0, "1.2.3.4," + longest}, "0:" + longest + ":11:22:-33", {}},
      {{0, 0, 0, filling + "aa,10.0.0.25"},
       "0:" + filling + ":11:22:-33",
       {tag + "address of 65 characters is cut"}},
      {{0, -5, 0, "10.0.0.25"}, "0:10.0.0.25:11:0:-33", {no_app}},
      {{0, 1, 0, ""}, "-1006173180:!:-77:-77:-77", {no_app, tag + "ip list is empty"}},
      {{0, 0, -1, "x"}, "-1006173182:!:-77:-77:-77", {tag + "get NAS http info failed"}},
      {{1, 1, 1, "x"}, "-1006173183:!:-77:-77:-77", {tag + "get sid by PAL_auth_get_auth failed"}},
  };
  for (const auto& [answers, expected, lines] : kRows) {
    test::take_log();
    platform = answers;
    std::string ip(kNasAddressBytes + 16, '!');
    int n[] = {-77, -77, -77};
    std::string text = std::to_string(get_nas_net_info(ip.data(), &n[0], &n[1], &n[2])) + ":";
    EXPECT_EQ(ip.substr(kNasAddressBytes), std::string(16, '!'));
    text += ip[0] == '!' ? "!" : ip.c_str();
    for (const int number : n) {
      text += ':' + std::to_string(number);
    }
    EXPECT_EQ(text, expected);
    EXPECT_EQ(test::take_product_log(), lines);
  }
  std::string ids[] = {std::string(40, '#'), std::string(40, '#')};
  EXPECT_EQ(devcfg_get_net_info(ids[0].data()) + devcfg_get_net_info(ids[1].data()), 0);
  EXPECT_EQ(ids[0].substr(34), std::string("\0#####", 6));
  EXPECT_NE(ids[0], ids[1]);
  EXPECT_EQ(devcfg_get_net_info(nullptr), 0);
}
