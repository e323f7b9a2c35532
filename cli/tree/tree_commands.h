// The subcommands of `devcfg tree`, a source for each group.
#pragma once

#include <CLI/CLI.hpp>

namespace devcfg {

void add_tree_file_commands(CLI::App& tree);  // init, sync-builtin, clear-events
void add_show_commands(CLI::App& tree);       // nodes, find, show
void add_add_command(CLI::App& tree);         // add

}  // namespace devcfg
