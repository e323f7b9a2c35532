#include "base/json_fields.h"
#include "cli/data_sources/commands.h"
#include "cli/output.h"
#include "cli/vault.h"

namespace devcfg {
namespace {

std::string length_member(json_object* object, const char* key) {
  return std::to_string(json_object_array_length(json_object_object_get(object, key)));
}

void list(const bool& json) {
  const Json document = all_data_sources_document();
  if (json) {
    print_json(document.get());
    return;
  }
  json_object* entries = json_object_object_get(document.get(), "vault_list");
  const std::size_t length = json_object_array_length(entries);
  if (length == 0) {
    print_line("no data sources");
    return;
  }
  Table table({"INDEX", "ID", "NAME", "TYPE", "ENABLED", "CHANNELS", "FILTERS", "LAST RECEIVED"});
  for (std::size_t i = 0; i < length; ++i) {
    json_object* entry = json_object_array_get_idx(entries, i);
    table.add_row({base::string_field(entry, "index"), base::string_field(entry, "vault_id"),
                   base::string_field(entry, "vault_name"), base::string_field(entry, "type"),
                   yes_or_no(json_object_get_boolean(json_object_object_get(entry, "enable")) != 0),
                   length_member(entry, "channel_guid_list"), length_member(entry, "filter"),
                   base::string_field(json_object_object_get(entry, "status"), "last_recv_date")});
  }
  table.print();
}

}  // namespace

void add_list_command(Command root) {
  const Command command = root.subcommand("list", "List the data sources, by index");
  bool& json = command.run(list);
  command.flag("--json", json, "Print the library's whole document: {\"vault_list\": [...]}");
  command.footer("Example:\n  devcfg list --json");
}

}  // namespace devcfg
