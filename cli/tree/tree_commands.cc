#include "cli/tree/tree_commands.h"

#include "cli/commands.h"

namespace devcfg {

void add_tree_commands(CLI::App& app) {
  CLI::App* tree = app.add_subcommand("tree", "The device tree");
  tree->require_subcommand(1);
  add_tree_file_commands(*tree);
  add_show_commands(*tree);
  add_add_command(*tree);
}

}  // namespace devcfg
