// The commands on data sources; each is registered by a function of its own.
#pragma once

#include "cli/command_line.h"

namespace devcfg {

void add_add_command(Command root);
void add_list_command(Command root);
void add_show_command(Command root);
void add_channels_command(Command root);
void add_modify_command(Command root);
void add_remove_command(Command root);
void add_export_command(Command root);
void add_import_command(Command root);

}  // namespace devcfg
