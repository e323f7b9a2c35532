#include "cli/command_error.h"
#include "cli/commands.h"
#include "cli/output.h"
#include "cli/vault.h"

namespace devcfg {
namespace {

struct RenamedCamera {
  std::string guid;
  std::string name;
};

std::string channels_of(std::size_t count, const std::string& guid) {
  return pluralize(count, "channel") + " of camera " + guid;
}

void removed(const std::string& camera) {
  std::string guid = camera;
  const std::size_t before = Vault().channels_of_camera(guid).size();
  notify_camera_removed(guid.data());
  if (!Vault().channels_of_camera(guid).empty()) {
    throw CommandError(not_stored("the removal of camera " + in_quotes(guid)));
  }
  print_line("removed " + channels_of(before, guid));
}

void renamed(const RenamedCamera& camera) {
  std::string guid = camera.guid;
  std::string name = camera.name;
  Vault().channels_of_camera(guid);  // throws when the vault cannot be read
  if (const int result = notify_camera_modified(guid.data(), name.data(), 0); result != kDevcfgOk) {
    throw CommandError("camera " + in_quotes(guid) + " was not renamed", result);
  }
  const std::vector<Channel> now = Vault().channels_of_camera(guid);
  for (const Channel& channel : now) {
    if (channel.name != name) {
      throw CommandError(not_stored("the new name of camera " + in_quotes(guid)));
    }
  }
  print_line("renamed " + channels_of(now.size(), guid));
}

}  // namespace

void add_camera_commands(Command root) {
  const Command family =
      root.group("camera", "Update the channels of a camera that was removed or renamed");

  Command command =
      family.subcommand("removed", "Remove a camera's channels from every data source");
  std::string& guid = command.run(removed);
  command.argument("GUID", guid, "The camera");
  command.footer("Example:\n  devcfg camera removed cam-01");

  command = family.subcommand("renamed", "Give a camera's channels its new name, everywhere");
  RenamedCamera& camera = command.run(renamed);
  command.argument("GUID", camera.guid, "The camera");
  command.argument("NAME", camera.name, "Its new name");
  command.footer("Example:\n  devcfg camera renamed cam-01 \"Main entrance\"");
}

}  // namespace devcfg
