#include "cli/commands.h"

namespace devcfg {

void add_data_source_commands(CLI::App& /*app*/) {}

}  // namespace devcfg
