#include "cli/tree/commands.h"

#include "base/fixed_paths.h"
#include "cli/commands.h"
#include "cli/tree/device_tree_file.h"

namespace devcfg {

void add_tree_commands(Command root) {
  const Command tree = root.group("tree", "The device tree");
  tree.footer("The device tree is " + std::string(base::kDeviceTreePath) +
              ",\nthe built-in list zelip_builtin.xml beside it.\n"
              "Example:\n  devcfg tree init\n  devcfg tree add till-1 --name \"Till 1\"");
  add_tree_init_command(tree);
  add_tree_sync_builtin_command(tree);
  add_tree_clear_events_command(tree);
  add_tree_show_commands(tree);
  add_tree_add_command(tree);
}

}  // namespace devcfg
