#include "cli/data_sources/channel_list.h"
#include "cli/data_sources/commands.h"
#include "cli/output.h"

namespace devcfg {
namespace {

struct ChannelsOptions {
  std::optional<std::string> id;
  bool json = false;
};

void print_array(const std::vector<DataSource>& data_sources, bool with_vault_id) {
  const Json array(json_object_new_array());
  for (const DataSource& data_source : data_sources) {
    for (const Channel& channel : data_source.channel_guid_list) {
      json_object* object = channel_object(channel);
      if (with_vault_id) {
        json_object_object_add(object, "vault_id", json_text(data_source.vault_id));
      }
      json_object_array_add(array.get(), object);
    }
  }
  print_json(array.get());
}

void channels(const ChannelsOptions& options) {
  const std::vector<DataSource> data_sources =
      options.id ? std::vector{stored_data_source(*options.id)} : Vault().data_sources();
  if (options.json) {
    print_array(data_sources, !options.id);
  } else {
    print_channels(data_sources);
  }
}

}  // namespace

void add_channels_command(Command root) {
  const Command command =
      root.subcommand("channels", "List the camera channels of one data source, or of all");
  ChannelsOptions& options = command.run(channels);
  command.argument("ID", options.id, "The data source; without one those of all are listed");
  command.flag("--json", options.json,
               "Print a JSON array; with an ID it is one that --channels accepts");
  command.footer(
      "Example: give one data source the channels of another\n"
      "  devcfg channels till-1 --json | devcfg modify till-2 --channels -");
}

}  // namespace devcfg
