#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

#include <cerrno>
#include <cstring>
#include <memory>

#include "platform/embedded/host/host_settings.h"
#include "platform/log_sinks.h"
#include "platform/platform_layer.h"

namespace {

constexpr char kSettingsFile[] = ORVANEIP_ROOT "/etc/orvane/host.conf";

struct Release {
  void operator()(ifaddrs* list) const { freeifaddrs(list); }
};

// Of `family`; empty for an address that is none or is of no use elsewhere.
std::string address_text(const ifaddrs& entry, int family) {
  const bool is_wanted = entry.ifa_addr != nullptr && entry.ifa_addr->sa_family == family &&
                         (entry.ifa_flags & IFF_UP) != 0 && (entry.ifa_flags & IFF_LOOPBACK) == 0;
  if (!is_wanted) {
    return "";
  }
  const void* address = nullptr;
  if (family == AF_INET) {
    address = &reinterpret_cast<const sockaddr_in*>(entry.ifa_addr)->sin_addr;
  } else {
    const in6_addr& long_address = reinterpret_cast<const sockaddr_in6*>(entry.ifa_addr)->sin6_addr;
    if (IN6_IS_ADDR_LINKLOCAL(&long_address)) {
      return "";
    }
    address = &long_address;
  }
  char text[INET6_ADDRSTRLEN] = "";
  return inet_ntop(family, address, text, sizeof(text)) != nullptr ? text : "";
}

void append_addresses(const ifaddrs* entries, int family, std::string& list) {
  for (const ifaddrs* entry = entries; entry != nullptr; entry = entry->ifa_next) {
    if (const std::string address = address_text(*entry, family); !address.empty()) {
      list += list.empty() ? "" : ",";
      list += address;
    }
  }
}

}  // namespace

int PAL_auth_get_auth(t_auth& auth) {
  auth.identity = "local";
  return 0;
}

int PAL_network_get_app_info(const t_auth& /*auth*/, const t_network_app_info& /*question*/,
                             t_network_app_info& answer) {
  answer.app_value = orvaneplatform::read_host_settings(kSettingsFile).app_port;
  return 0;
}

int PAL_system_get_share_addr(const t_auth& /*auth*/, const t_system_share_addr& /*question*/,
                              t_system_share_addr& answer) {
  ifaddrs* found = nullptr;
  if (getifaddrs(&found) != 0) {
    orvane_log_debug("[hostinfo] the interfaces cannot be listed: %s", strerrordesc_np(errno));
    return -1;
  }
  const std::unique_ptr<ifaddrs, Release> interfaces(found);
  const orvaneplatform::HostSettings settings = orvaneplatform::read_host_settings(kSettingsFile);
  answer.share_value_1 = settings.http_port;
  answer.share_value_2 = settings.https_port;
  answer.ip_list.clear();
  append_addresses(found, AF_INET, answer.ip_list);
  append_addresses(found, AF_INET6, answer.ip_list);
  return 0;
}
