#include <memory>

#include "cli/commands.h"
#include "cli/output.h"
#include "cli/command_error.h"
#include "cli/vault.h"

namespace devcfg {
namespace {

struct CameraOptions {
  std::string guid;
  std::string name;
};

std::string channels_of(std::size_t count, const std::string& guid) {
  return counted(count, "channel") + " of camera " + guid;
}

void removed(const CameraOptions& options) {
  const std::size_t before = Vault().channels_of_camera(options.guid).size();
  std::string guid = options.guid;
  notify_camera_removed(guid.data());
  if (!Vault().channels_of_camera(guid).empty()) {
    throw Refusal(did_not_arrive("the removal of camera " + in_quotes(guid)));
  }
  print_line("removed " + channels_of(before, guid));
}

void renamed(const CameraOptions& options) {
  std::string guid = options.guid;
  std::string name = options.name;
  Vault().channels_of_camera(guid);  // a vault that cannot be read is told in its own words
  if (const int result = notify_camera_modified(guid.data(), name.data(), 0); result != kDevcfgOk) {
    throw Refusal("camera " + in_quotes(guid) + " was not renamed", result);
  }
  const std::vector<Channel> now = Vault().channels_of_camera(guid);
  for (const Channel& channel : now) {
    if (channel.name != name) {
      throw Refusal(did_not_arrive("the new name of camera " + in_quotes(guid)));
    }
  }
  print_line("renamed " + channels_of(now.size(), guid));
}

}  // namespace

void add_camera_commands(CLI::App& app) {
  CLI::App* family =
      app.add_subcommand("camera", "Tell what happened to a camera: its channels follow");
  family->require_subcommand(1);
  auto options = std::make_shared<CameraOptions>();

  CLI::App* command =
      family->add_subcommand("removed", "Remove a camera's channels from every data source")
          ->footer("Example:\n  devcfg camera removed cam-01");
  command->add_option("GUID", options->guid, "The camera")->required();
  command->callback([options] { removed(*options); });

  command = family->add_subcommand("renamed", "Give a camera's channels its new name, everywhere")
                ->footer("Example:\n  devcfg camera renamed cam-01 \"Main entrance\"");
  command->add_option("GUID", options->guid, "The camera")->required();
  command->add_option("NAME", options->name, "Its new name")->required();
  command->callback([options] { renamed(*options); });
}

}  // namespace devcfg
