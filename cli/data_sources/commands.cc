#include "cli/data_sources/commands.h"

#include "cli/commands.h"

namespace devcfg {

void add_data_source_commands(Command root) {
  add_add_command(root);
  add_list_command(root);
  add_show_command(root);
  add_channels_command(root);
  add_modify_command(root);
  add_remove_command(root);
  add_export_command(root);
  add_import_command(root);
}

}  // namespace devcfg
