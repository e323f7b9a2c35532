#include "cli/command_error.h"
#include "cli/output.h"
#include "cli/tree/commands.h"
#include "cli/tree/device_tree_file.h"

namespace devcfg {
namespace {

struct EventOptions {
  std::string file;
  std::string device;
};

std::size_t count_events(const DeviceTreeFile& tree, const std::string& device) {
  constexpr char kTop[] = "device_event_root";
  std::size_t count = 0;
  for (const std::string& terminal :
       listed_names(tree, kTop, device.c_str(), "terminal_node_list")) {
    count += listed_names(tree, kTop, device.c_str(), terminal.c_str(), "event_node_list").size();
  }
  return count;
}

void clear_events(const EventOptions& options) {
  const DeviceTreeFile tree(kCfgRead, options.file);
  std::string device = options.device;
  const std::size_t count = count_events(tree, device);
  if (!remove_event_in_table(tree.handle(), device.data())) {
    throw CommandError("the event service did not remove every event of " + device +
                       " (--log shows which)");
  }
  print_line(count == 0 ? "no events recorded for " + device
                        : pluralize(count, "event") + " of " + device + " cleared");
}

}  // namespace

void add_tree_clear_events_command(Command tree) {
  const Command command =
      tree.subcommand("clear-events", "Have the event service remove the events of a device");
  EventOptions& options = command.run(clear_events);
  command.argument("FILE", options.file, "The event tree, which is only read");
  command.argument("DEVICE", options.device, "The device's node, device_NNN");
}

}  // namespace devcfg
