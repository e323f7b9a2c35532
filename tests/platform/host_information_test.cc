#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>

#include <cstddef>
#include <filesystem>

#include "platform/embedded/host_settings.h"
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
bool listing_fails = false;
int open_lists = 0;

}  // namespace

// The platform asks this program for the interfaces.
extern "C" __attribute__((visibility("default"))) int getifaddrs(ifaddrs** list) noexcept {
  *list = interfaces;
  for (Entry& entry : interfaces) {
    entry.ifa_next = &entry + 1 != std::end(interfaces) ? &entry + 1 : nullptr;
  }
  open_lists += listing_fails ? 0 : 1;
  return listing_fails ? -1 : 0;
}

extern "C" __attribute__((visibility("default"))) void freeifaddrs(ifaddrs*) noexcept {
  --open_lists;
}

TEST(HostInformation, ListsUsefulAddressesIpv4First) {
  t_system_share_addr answer;
  answer.ip_list = "of an earlier call";
  EXPECT_EQ(PAL_system_get_share_addr({}, {}, answer), 0);
  EXPECT_EQ(answer.ip_list, "192.168.1.10,10.0.0.5,2001:db8::17,fd00::2");
  EXPECT_EQ(open_lists, 0);
  listing_fails = true;
  EXPECT_NE(PAL_system_get_share_addr({}, {}, answer), 0);
  listing_fails = false;
}

// The sources of the host information are built into this program, with a root of its own.
TEST(HostInformation, ReadsPortsFromTheSettingsFileWithTheDefaultForEveryLineThatIsNone) {
  const std::string file = ORVANEIP_ROOT "/etc/orvane/host.conf";
  const std::vector<int> kDefault = {80, 443, 8080};
  const auto ports = [&file](const std::string& settings) {
    settings.empty() ? void() : test::write_file(file, settings);
    t_system_share_addr share;
    t_network_app_info app;
    PAL_system_get_share_addr({}, {}, share);
    PAL_network_get_app_info({}, {}, app);
    return std::vector{share.share_value_1, share.share_value_2, app.app_value};
  };
  std::filesystem::remove_all(ORVANEIP_ROOT);
  test::take_log();
  EXPECT_EQ(ports(""), kDefault);
  std::filesystem::create_directories(ORVANEIP_ROOT "/etc/orvane");
  EXPECT_EQ(ports("http_port = 8000\nhttps_port = 8443\napp_port = 9000"),
            (std::vector{8000, 8443, 9000}));
  EXPECT_EQ(ports("# p\n\n \thttp_port \t=  8000 # web\r\n").at(0), 8000);
  EXPECT_EQ(ports("http_port = 1\nhttp_port = 65535\n").at(0), 65535);
  EXPECT_TRUE(test::take_log().empty());
  EXPECT_EQ(ports("http_port=1\n" + std::string(70'000, '#')), kDefault);
  EXPECT_EQ(test::take_log().size(), 2U);
  std::filesystem::remove(file);
  std::filesystem::create_directory(file);
  EXPECT_EQ(ports(""), kDefault);
  EXPECT_EQ(test::take_log().size(), 2U);
  for (const std::string line :
       {"http_port = 0", "http_port = 65536", "http_port = 99999999999", "http_port = 80a",
        "http_port = -1", "http_port =", "http_port", "= 8000", "HTTP_PORT = 8000"}) {
    EXPECT_EQ(orvaneplatform::parse_host_settings("\n" + line, "F").http_port, 80);
    EXPECT_EQ(test::take_product_log(), std::vector{"[hostinfo] F, line 2 is ignored: " + line});
  }
}
