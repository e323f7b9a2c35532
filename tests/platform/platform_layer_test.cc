#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>

#include <filesystem>

#include "platform/embedded/host/host_settings.h"
#include "tests/support/library.h"

namespace {

constexpr unsigned int kUp = IFF_UP | IFF_RUNNING;

struct Entry : ifaddrs {
  sockaddr_storage address{};

  Entry(unsigned int flags, int family, const char* text) : ifaddrs{} {
    ifa_flags = flags;
    ifa_addr = family != AF_UNSPEC ? reinterpret_cast<sockaddr*>(&address) : nullptr;
    address.ss_family = static_cast<sa_family_t>(family);
    inet_pton(AF_INET, text, &reinterpret_cast<sockaddr_in*>(&address)->sin_addr);
    inet_pton(family, text, &reinterpret_cast<sockaddr_in6*>(&address)->sin6_addr);
  }
};

// clang-format off
Entry interfaces[] = {
    {kUp | IFF_LOOPBACK, AF_INET, "127.0.0.1"}, {kUp, AF_PACKET, ""}, {kUp, AF_UNSPEC, ""},
    {kUp, AF_INET6, "2001:db8::17"}, {kUp, AF_INET, "192.168.1.10"}, {0, AF_INET, "10.9.9.9"},
    {kUp, AF_INET6, "fe80::1"}, {kUp, AF_INET, "10.0.0.5"}, {kUp | IFF_LOOPBACK, AF_INET6, "::1"},
    {kUp, AF_INET6, "fd00::2"}};
// clang-format on
int open_lists = 0;  // below 0: getifaddrs fails

}  // namespace

// Replace the system's functions for the platform.
extern "C" __attribute__((visibility("default"))) int getifaddrs(ifaddrs** list) noexcept {
  *list = interfaces;
  for (Entry& entry : interfaces) {
    entry.ifa_next = &entry + 1 != std::end(interfaces) ? &entry + 1 : nullptr;
  }
  return open_lists < 0 ? -1 : open_lists++;
}
extern "C" __attribute__((visibility("default"))) void freeifaddrs(ifaddrs*) noexcept {
  --open_lists;
}

// The sources of the host information are compiled into this program with another ORVANEIP_ROOT.
TEST(HostInformation, ListsUsableAddressesIpv4FirstAndPortsWithDefaults) {
  t_system_share_addr share;
  const auto ports = [&share] {
    t_network_app_info app;
    PAL_system_get_share_addr({}, {}, share);
    PAL_network_get_app_info({}, {}, app);
    return std::vector{share.share_value_1, share.share_value_2, app.app_value};
  };
  const std::string file = ORVANEIP_ROOT "/etc/orvane/host.conf";
  const std::vector<int> kDefault = {80, 443, 8080};
  std::filesystem::remove_all(ORVANEIP_ROOT);
  share.ip_list = "of an earlier call";
  EXPECT_EQ(ports(), kDefault);
  EXPECT_EQ(share.ip_list, "192.168.1.10,10.0.0.5,2001:db8::17,fd00::2");
  EXPECT_EQ(std::exchange(open_lists, -1), 0);
  EXPECT_NE(PAL_system_get_share_addr({}, {}, share), 0);
  EXPECT_EQ(test::take_log().size(), 1U);
  open_lists = 0;
  std::filesystem::create_directories(file);
  EXPECT_EQ(ports(), kDefault);
  EXPECT_EQ(test::take_log().size(), 2U) << "a directory";
  std::filesystem::remove(file);
  test::write_file(file,
                   "http_port = 1\n# p\n\n \thttps_port \t=  8443 # web\r\napp_port=65535\n"
                   "http_port = 8000");
  EXPECT_EQ(ports(), (std::vector{8000, 8443, 65535}));
  EXPECT_TRUE(test::take_log().empty());
  test::write_file(file, "http_port=1\n" + std::string(70'000, '#'));
  EXPECT_EQ(ports(), kDefault);
  EXPECT_EQ(test::take_log().size(), 2U);
  for (const std::string line :
       {"http_port = 0", "http_port = 65536", "http_port = 99999999999", "http_port = 80a",
        "http_port = -1", "http_port =", "http_port", "= 8000", "HTTP_PORT = 8000"}) {
    EXPECT_EQ(orvaneplatform::parse_host_settings("\n" + line, "F").http_port, 80);
    EXPECT_EQ(test::take_product_log(), std::vector{"[hostinfo] F, line 2 is ignored: " + line});
  }
}
