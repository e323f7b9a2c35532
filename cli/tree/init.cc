#include <cstdio>
#include <filesystem>

#include "base/fixed_paths.h"
#include "cli/command_error.h"
#include "cli/tree/commands.h"
#include "cli/tree/device_tree_file.h"

namespace devcfg {
namespace {

void init() {
  const std::string file = base::kDeviceTreePath;
  std::error_code ignored;  // initial_xml reports a failure
  std::filesystem::create_directories(std::filesystem::path(file).parent_path(), ignored);
  if (!initial_xml()) {
    throw CommandError("the device tree " + file + " cannot be created");
  }
  std::printf("the device tree is %s\n", file.c_str());
}

}  // namespace

void add_tree_init_command(Command tree) {
  tree.subcommand("init", "Create the device tree and its directory, if missing").run(init);
}

}  // namespace devcfg
