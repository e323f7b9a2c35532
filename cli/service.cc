// devcfg service: the metadata service and its device manager.
#include <string>

#include "cli/commands.h"
#include "cli/command_error.h"

namespace devcfg {
namespace {

// `status` as the functions of service/service_commands.h return it.
void require_success(int status) {
  if (status < 0) {
    throw Refusal("the command could not be run, or was ended by a signal (--log tells why)");
  }
  if (status > 0) {
    throw Refusal("the command ended with exit status " + std::to_string(status));
  }
}

void add_command(CLI::App& service, const char* name, const char* help, int (*call)()) {
  service.add_subcommand(name, help)->callback([call] { require_success(call()); });
}

void add_device_command(CLI::App& service, const char* name, const char* help, int (*call)(char*)) {
  CLI::App* const command = service.add_subcommand(name, help);
  const auto device_id = std::make_shared<std::string>();
  command->add_option("ID", *device_id, "Identifier of the device")->required();
  command->callback([call, device_id] { require_success(call(device_id->data())); });
}

}  // namespace

void add_service_commands(CLI::App& app) {
  CLI::App* const service =
      app.add_subcommand("service", "Restart the metadata service, load and unload devices");
  service->require_subcommand(1);
  add_command(*service, "restart", "Restart the metadata service", devcfg_restart_all);
  add_command(*service, "reload", "Reload all devices", devcfg_dev_reload_all);
  add_device_command(*service, "load", "Load one device", devcfg_dev_load);
  add_device_command(*service, "unload", "Unload one device", devcfg_dev_unload);
}

}  // namespace devcfg
