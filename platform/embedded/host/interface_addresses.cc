#include "platform/embedded/host/interface_addresses.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

#include <cerrno>
#include <cstring>
#include <memory>

#include "platform/log_sinks.h"

namespace orvaneplatform {
namespace {

bool is_usable_interface(const ifaddrs& entry) {
  return (entry.ifa_flags & IFF_UP) != 0 && (entry.ifa_flags & IFF_LOOPBACK) == 0;
}

// Returns the binary address, or null for a link-local IPv6 address.
const void* find_address(const sockaddr* address) {
  if (address->sa_family == AF_INET) {
    return &reinterpret_cast<const sockaddr_in*>(address)->sin_addr;
  }
  const in6_addr& ipv6 = reinterpret_cast<const sockaddr_in6*>(address)->sin6_addr;
  return IN6_IS_ADDR_LINKLOCAL(&ipv6) ? nullptr : &ipv6;
}

// Returns the address of the entry as text, or an empty string when it is not of `family` or is
// left out.
std::string format_address(const ifaddrs& entry, int family) {
  const bool is_wanted = entry.ifa_addr != nullptr && entry.ifa_addr->sa_family == family &&
                         is_usable_interface(entry);
  const void* address = is_wanted ? find_address(entry.ifa_addr) : nullptr;
  char text[INET6_ADDRSTRLEN] = "";
  return address != nullptr && inet_ntop(family, address, text, sizeof(text)) != nullptr ? text
                                                                                         : "";
}

void append_addresses(const ifaddrs* entries, int family, std::string& list) {
  for (const ifaddrs* entry = entries; entry != nullptr; entry = entry->ifa_next) {
    if (const std::string address = format_address(*entry, family); !address.empty()) {
      list += list.empty() ? "" : ",";
      list += address;
    }
  }
}

}  // namespace

std::optional<std::string> list_interface_addresses() {
  ifaddrs* entries = nullptr;
  if (getifaddrs(&entries) != 0) {
    orvane_log_debug("[hostinfo] the interfaces cannot be listed: %s", strerrordesc_np(errno));
    return std::nullopt;
  }
  const auto release = [](ifaddrs* list) { freeifaddrs(list); };
  const std::unique_ptr<ifaddrs, decltype(release)> owner(entries);
  std::string list;
  append_addresses(entries, AF_INET, list);
  append_addresses(entries, AF_INET6, list);
  return list;
}

}  // namespace orvaneplatform
