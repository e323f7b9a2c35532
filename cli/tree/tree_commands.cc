#include "cli/tree/tree_commands.h"

#include "cli/commands.h"
#include "cli/tree/device_tree_file.h"

namespace devcfg {

void add_tree_commands(CLI::App& app) {
  CLI::App* tree = app.add_subcommand("tree", "The device tree");
  tree->require_subcommand(1);
  tree->footer("The device tree is " + system_device_tree() +
               ",\nthe built-in list zelip_builtin.xml beside it.\n"
               "Example:\n  devcfg tree init\n  devcfg tree add till-1 --name \"Till 1\"");
  add_tree_file_commands(*tree);
  add_show_commands(*tree);
  add_add_command(*tree);
}

}  // namespace devcfg
