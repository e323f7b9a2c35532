#include "service/service_commands.h"

#include "base/fixed_paths.h"
#include "platform/command_runner.h"
#include "platform/log_sinks.h"

namespace {

// Returns the path without the prefix of a build that runs elsewhere, for the log.
const char* path_on_device(const char* path) { return path + sizeof(ORVANEIP_ROOT) - 1; }

// Returns -1 when the command did not exit.
int exit_code(int status) {
  const bool has_exited = (status & 0x7F) == 0;
  return has_exited ? status >> 8 & 0xFF : -1;
}

int run(const char* path, const char* argument) {
  const int code = exit_code(vorn_exec(0, 0, 0, path, argument, static_cast<char*>(nullptr)));
  if (code < 0) {
    orvane_log_debug("[libdevcfg] System command error: %s %s", path_on_device(path), argument);
  }
  return code;
}

int run_for_device(const char* argument, const char* device_id) {
  if (device_id == nullptr) {
    orvane_log_debug("[libdevcfg] %s %s: no device identifier",
                     path_on_device(base::kDeviceManagerPath), argument);
    return -1;
  }
  const int code = exit_code(vorn_exec(0, 0, 0, base::kDeviceManagerPath, argument, device_id,
                                       static_cast<char*>(nullptr)));
  if (code < 0) {
    orvane_log_debug("[libdevcfg] System command error: %s %s %s",
                     path_on_device(base::kDeviceManagerPath), argument, device_id);
  }
  return code;
}

}  // namespace

int devcfg_restart_all() { return run(base::kServiceScriptPath, "restart"); }

int devcfg_dev_reload_all() { return run(base::kDeviceManagerPath, "dev_reload_all"); }

int devcfg_dev_load(char* device_id) { return run_for_device("dev_load", device_id); }

int devcfg_dev_unload(char* device_id) { return run_for_device("dev_unload", device_id); }
