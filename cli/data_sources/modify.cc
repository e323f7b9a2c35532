#include "cli/command_error.h"
#include "cli/data_sources/channel_list.h"
#include "cli/data_sources/commands.h"
#include "cli/data_sources/name_and_description.h"
#include "cli/output.h"

namespace devcfg {
namespace {

struct ModifyOptions {
  std::string id;
  std::optional<std::string> name;
  std::optional<std::string> description;
  bool enable = false;
  bool disable = false;
  ChannelOptions channels;

  bool edits_name_or_description() const { return name || description; }
  bool edits_enable() const { return enable || disable; }
};

void check_options(const ModifyOptions& options) {
  if (!options.edits_name_or_description() && !options.edits_enable() &&
      !options.channels.given()) {
    throw UsageError("modify: nothing to change is given");
  }
  if (options.name) {
    check_name(*options.name);
  }
  if (options.description) {
    check_description(*options.description);
  }
}

// Returns the data source after the change. The library changes the name and the description
// together, so the one that is not given is that of `before`.
DataSource wanted_data_source(const ModifyOptions& options, const DataSource& before,
                              json_object* channel_list) {
  DataSource wanted = before;
  wanted.vault_name = options.name.value_or(before.vault_name);
  wanted.description = options.description.value_or(before.description);
  if (options.edits_enable()) {
    wanted.enable = options.enable;
  }
  if (channel_list != nullptr) {
    wanted.channel_guid_list = sorted_channels(channel_list);
  }
  if (options.edits_name_or_description() && wanted.vault_name.empty()) {
    throw CommandError(in_quotes(options.id) + " has no name yet: set one with --name");
  }
  return wanted;
}

void change(const ModifyOptions& options, const DataSource& wanted, json_object* channel_list) {
  std::string id = options.id;
  const Json name(options.edits_name_or_description() ? json_text(wanted.vault_name) : nullptr);
  const Json description(options.edits_name_or_description() ? json_text(wanted.description)
                                                             : nullptr);
  const Json enable(options.edits_enable() ? json_object_new_boolean(wanted.enable) : nullptr);
  std::vector<int> channel_indexes;
  const int result =
      devcfg_modify_device(id.data(), nullptr, name.get(), description.get(), nullptr, nullptr,
                           channel_list, nullptr, enable.get(), nullptr, nullptr, channel_indexes);
  if (result != kDevcfgOk) {
    throw CommandError(in_quotes(options.id) + " was not changed", result);
  }
}

// Compares only what was to change: other programs may have changed the rest.
bool is_stored(const ModifyOptions& options, const DataSource& wanted, const DataSource& now) {
  return (!options.edits_name_or_description() ||
          (now.vault_name == wanted.vault_name && now.description == wanted.description)) &&
         (!options.edits_enable() || now.enable == wanted.enable) &&
         (!options.channels.given() ||
          same_channels(now.channel_guid_list, wanted.channel_guid_list));
}

void print_changes(const DataSource& before, const DataSource& now) {
  Table table({"", "BEFORE", "NOW"});
  const auto row = [&table](const char* title, const std::string& old_text,
                            const std::string& new_text) {
    const std::string changed = new_text.empty() ? "(none)" : new_text;
    table.add_row({title, old_text, new_text == old_text ? "(unchanged)" : changed});
  };
  row("Name", before.vault_name, now.vault_name);
  row("Description", before.description, now.description);
  row("Enabled", yes_or_no(before.enable), yes_or_no(now.enable));
  table.add_row({"Channels", std::to_string(before.channel_guid_list.size()),
                 same_channels(before.channel_guid_list, now.channel_guid_list)
                     ? "(unchanged)"
                     : std::to_string(now.channel_guid_list.size())});
  table.print();
}

void modify(const ModifyOptions& options) {
  check_options(options);
  const Json channel_list = read_channel_options(options.channels);
  const DataSource before = stored_data_source(options.id);
  const DataSource wanted = wanted_data_source(options, before, channel_list.get());
  change(options, wanted, channel_list.get());
  const DataSource now = stored_data_source(options.id);
  if (!is_stored(options, wanted, now)) {
    throw CommandError(not_stored("the change of " + in_quotes(options.id)));
  }
  print_changes(before, now);
}

}  // namespace

void add_modify_command(Command root) {
  const Command command =
      root.subcommand("modify", "Change a data source; what is not given is kept");
  ModifyOptions& options = command.run(modify);
  command.argument("ID", options.id, "Its identifier");
  command.option("--name", options.name, name_help() + "; no other data source may have it");
  command.option("--description", options.description, description_help() + "; \"\" clears it");
  const Option enable = command.flag("--enable", options.enable, "Switch it on");
  command.flag("--disable", options.disable, "Switch it off").excludes(enable);
  add_channel_options(command, options.channels,
                      "\nThe new channels replace all old ones; [] removes them");
  command.footer("Example:\n  devcfg modify till-1 --name \"Front till\" --disable");
}

}  // namespace devcfg
