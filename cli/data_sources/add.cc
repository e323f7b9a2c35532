#include <algorithm>

#include "cli/command_error.h"
#include "cli/data_sources/channel_list.h"
#include "cli/data_sources/commands.h"
#include "cli/data_sources/name_and_description.h"
#include "cli/output.h"

namespace devcfg {
namespace {

struct AddOptions {
  std::optional<std::string> id;
  std::string type;
  std::string name;
  std::string description;
  ChannelOptions channels;
  bool disabled = false;
  bool json = false;
};

// Returns the buffer from which the library reads the identifier, or into which it writes a new
// one.
std::vector<char> identifier_buffer(const std::string& id) {
  std::vector<char> buffer(std::max(id.size() + 1, kDeviceIdBytes));
  std::copy(id.begin(), id.end(), buffer.begin());
  return buffer;
}

// Of two processes that add at the same moment and choose the same index, one fails. Each time
// another one has stored a data source, so the vault is full before the attempts are used up.
std::string add_to_vault(AddOptions options, json_object* channel_list) {
  std::vector<char> id = identifier_buffer(options.id.value_or(""));
  int error = metadata_vault::kVaultIndexTaken;
  for (int attempt = 0;
       error == metadata_vault::kVaultIndexTaken && attempt <= metadata_vault::kMaxDataSources;
       ++attempt) {
    error = kDevcfgOk;
    devcfg_add_device(id.data(), options.type.data(), nullptr, options.name.data(),
                      options.description.data(), nullptr, nullptr, channel_list, 0, false,
                      !options.disabled, &error);
  }
  if (error != kDevcfgOk) {
    throw CommandError("the data source was not added", error);
  }
  return id.data();
}

void check_stored(const AddOptions& options, json_object* channel_list, const std::string& id) {
  const DataSource stored = stored_data_source(id);
  const auto channels =
      channel_list != nullptr ? sorted_channels(channel_list) : std::vector<Channel>();
  if (stored.vault_name != options.name || stored.type != options.type ||
      stored.description != options.description || stored.enable == options.disabled) {
    throw CommandError(not_stored("a part of the new data source " + in_quotes(id)));
  }
  if (!same_channels(stored.channel_guid_list, channels)) {
    throw CommandError(in_quotes(id) + " was added, but not with these channels (--log shows why)");
  }
}

void add(const AddOptions& options) {
  check_name(options.name);
  check_description(options.description);
  const Json channel_list = read_channel_options(options.channels);
  if (options.id && Vault().find(*options.id)) {
    throw CommandError(in_quotes(*options.id) + " was not added", kDevcfgAlreadyExists);
  }
  Vault().data_sources();  // throws when the vault cannot be read
  const std::string id = add_to_vault(options, channel_list.get());
  check_stored(options, channel_list.get(), id);
  if (!options.json) {
    print_line(id);
    return;
  }
  const Json answer(json_object_new_object());
  json_object_object_add(answer.get(), "vault_id", json_text(id));
  print_json(answer.get());
}

}  // namespace

void add_add_command(Command root) {
  const Command command = root.subcommand("add", "Add a data source and print its identifier");
  AddOptions& options = command.run(add);
  command.argument("ID", options.id, "Its identifier; without one a new identifier is generated");
  command.option("--type", options.type, "Its kind, for instance pos-serial").required();
  command.option("--name", options.name, name_help()).required();
  command.option("--description", options.description, description_help());
  add_channel_options(command, options.channels);
  command.flag("--disabled", options.disabled, "Add it switched off");
  command.flag("--json", options.json, "Print {\"vault_id\": ...}");
  command.footer(
      "Example:\n  devcfg add till-1 --type pos-serial --name \"Till 1\" "
      "--channel 0:cam-01:Entrance");
}

}  // namespace devcfg
