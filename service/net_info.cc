#include "service/net_info.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "foundation/identifiers.h"
#include "foundation/result_codes.h"
#include "platform/log_sinks.h"
#include "platform/platform_layer.h"

namespace {

constexpr char kFunction[] = "get_nas_net_info";

struct NetInfo {
  t_network_app_info application;
  t_system_share_addr share;
};

// Returns 0 or a result code. A missing answer about the application is not a failure.
int ask_platform(NetInfo& info) {
  t_auth auth;
  if (PAL_auth_get_auth(auth) != 0) {
    orvane_log_debug("[%s](%d) get sid by PAL_auth_get_auth failed", kFunction, __LINE__);
    return kDevcfgAuthFailed;
  }
  if (PAL_network_get_app_info(auth, t_network_app_info(), info.application) != 0) {
    orvane_log_debug("[%s](%d) PAL_network_get_app_info failed", kFunction, __LINE__);
    info.application = {};
  }
  if (PAL_system_get_share_addr(auth, t_system_share_addr(), info.share) != 0) {
    orvane_log_debug("[%s](%d) get NAS http info failed", kFunction, __LINE__);
    return kDevcfgShareAddressFailed;
  }
  if (info.share.ip_list.empty()) {
    orvane_log_debug("[%s](%d) ip list is empty", kFunction, __LINE__);
    return kDevcfgAddressListEmpty;
  }
  return kDevcfgOk;
}

// Returns the first entry that is an address, or an empty string.
std::string_view first_address(std::string_view list) {
  while (!list.empty()) {
    const std::string_view entry = list.substr(0, list.find(','));
    if (entry.size() >= kMinNasAddressLength) {
      return entry;
    }
    list.remove_prefix(std::min(entry.size() + 1, list.size()));
  }
  return {};
}

void copy_address(char* ip, std::string_view address) {
  const std::size_t length = std::min(address.size(), kNasAddressBytes - 1);
  if (length < address.size()) {
    orvane_log_debug("[%s](%d) address of %zu characters is cut", kFunction, __LINE__,
                     address.size());
  }
  std::memcpy(ip, address.data(), length);
  ip[length] = '\0';
}

void write_number(int* target, int number) {
  if (target != nullptr) {
    *target = number;
  }
}

}  // namespace

int get_nas_net_info(char* ip, int* share_value_1, int* app_value, int* share_value_2) {
  NetInfo info;
  if (const int result = ask_platform(info); result != kDevcfgOk) {
    return result;
  }
  const std::string_view address = first_address(info.share.ip_list);
  if (ip != nullptr && !address.empty()) {
    copy_address(ip, address);
  }
  write_number(share_value_1, info.share.share_value_1);
  write_number(app_value, info.application.app_value);
  write_number(share_value_2, info.share.share_value_2);
  return kDevcfgOk;
}

int devcfg_get_net_info(char* id) {
  if (id != nullptr) {
    const std::string created = create_device_id();
    std::memcpy(id, created.c_str(), created.size() + 1);
  }
  return kDevcfgOk;
}
