#include "cli/commands.h"

namespace devcfg {

void add_camera_commands(CLI::App& /*app*/) {}

}  // namespace devcfg
