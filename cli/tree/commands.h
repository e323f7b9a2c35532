// The subcommands of `devcfg tree`; each is registered by a function of its own.
#pragma once

#include "cli/command_line.h"

namespace devcfg {

void add_tree_init_command(Command tree);
void add_tree_sync_builtin_command(Command tree);
void add_tree_clear_events_command(Command tree);
void add_tree_show_commands(Command tree);  // nodes, find, show
void add_tree_add_command(Command tree);

}  // namespace devcfg
