// A platform that is preloaded into devcfg: it prints commands instead of running them, and invents
// the information about the machine.
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include "platform/command_runner.h"
#include "platform/platform_layer.h"

int vorn_exec(int zero_1, int zero_2, int zero_3, const char* path, ...) {
  std::printf("%.*s<%s>", zero_1 | zero_2 | zero_3, "not 0", path);
  va_list list;
  va_start(list, path);
  while (const char* argument = va_arg(list, const char*)) {
    std::printf("<%s>", argument);
  }
  va_end(list);
  return std::atoi(std::getenv("STAND_IN_ANSWER"));
}

int PAL_system_get_share_addr(const t_auth& /*auth*/, const t_system_share_addr& /*question*/,
                              t_system_share_addr& answer) {
  answer.share_value_1 = 8000;
  answer.share_value_2 = 8443;
  answer.ip_list = std::getenv("STAND_IN_ANSWER");
  return 0;
}

int PAL_network_get_app_info(const t_auth& /*auth*/, const t_network_app_info& /*question*/,
                             t_network_app_info& answer) {
  answer.app_value = 9000;
  return 0;
}
