#include "platform/platform_layer.h"

#include <utility>

#include "base/fixed_paths.h"
#include "platform/embedded/host/host_settings.h"
#include "platform/embedded/host/interface_addresses.h"

int PAL_auth_get_auth(t_auth& auth) {
  auth.identity = "local";
  return 0;
}

int PAL_network_get_app_info(const t_auth& /*auth*/, const t_network_app_info& /*question*/,
                             t_network_app_info& answer) {
  using namespace orvaneplatform;
  answer.app_value = read_host_settings(base::kHostSettingsPath).app_port;
  return 0;
}

int PAL_system_get_share_addr(const t_auth& /*auth*/, const t_system_share_addr& /*question*/,
                              t_system_share_addr& answer) {
  using namespace orvaneplatform;
  std::optional<std::string> addresses = list_interface_addresses();
  if (!addresses) {
    return -1;
  }
  const HostSettings settings = read_host_settings(base::kHostSettingsPath);
  answer.share_value_1 = settings.http_port;
  answer.share_value_2 = settings.https_port;
  answer.ip_list = std::move(*addresses);
  return 0;
}
