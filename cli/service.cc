// devcfg service: the metadata service and its device manager.
#include <string>

#include "cli/command_error.h"
#include "cli/commands.h"
#include "orvaneip.h"

namespace devcfg {
namespace {

// `status` as the functions of service/service_commands.h return it.
void require_success(int status) {
  if (status < 0) {
    throw CommandError("the command could not be run, or was ended by a signal (--log shows why)");
  }
  if (status > 0) {
    throw CommandError("the command ended with exit status " + std::to_string(status));
  }
}

void add_command(Command service, const char* name, const char* help, int (*call)()) {
  service.subcommand(name, help).run([call] { require_success(call()); });
}

void add_device_command(Command service, const char* name, const char* help, int (*call)(char*)) {
  const Command command = service.subcommand(name, help);
  std::string& device_id =
      command.run<std::string>([call](std::string id) { require_success(call(id.data())); });
  command.argument("ID", device_id, "Identifier of the device");
}

}  // namespace

void add_service_commands(Command root) {
  const Command service =
      root.group("service", "Restart the metadata service, load and unload devices");
  add_command(service, "restart", "Restart the metadata service", devcfg_restart_all);
  add_command(service, "reload", "Reload all devices", devcfg_dev_reload_all);
  add_device_command(service, "load", "Load one device", devcfg_dev_load);
  add_device_command(service, "unload", "Unload one device", devcfg_dev_unload);
}

}  // namespace devcfg
