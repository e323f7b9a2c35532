#include "cli/data_sources/commands.h"

#include "cli/commands.h"

namespace devcfg {

void add_data_source_commands(CLI::App& app) {
  register_add(app);
  register_list(app);
  register_show(app);
  register_channels(app);
  register_modify(app);
  register_remove(app);
  register_export(app);
  register_import(app);
}

}  // namespace devcfg
