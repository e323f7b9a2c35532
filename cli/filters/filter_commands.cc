#include "cli/commands.h"

namespace devcfg {

void add_filter_commands(CLI::App& /*app*/) {}

}  // namespace devcfg
