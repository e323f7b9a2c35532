#include "base/json_fields.h"
#include "cli/data_sources/channel_list.h"
#include "cli/data_sources/commands.h"
#include "cli/filters/filter_list.h"
#include "cli/output.h"

namespace devcfg {
namespace {

struct ShowOptions {
  std::string id;
  bool json = false;
};

// Returns the local time from the list of all data sources, or "never".
std::string last_received(const std::string& vault_id) {
  const Json document = all_data_sources_document();
  json_object* entries = json_object_object_get(document.get(), "vault_list");
  for (std::size_t i = 0; i < json_object_array_length(entries); ++i) {
    json_object* entry = json_object_array_get_idx(entries, i);
    if (base::string_field(entry, "vault_id") == vault_id) {
      const std::string date =
          base::string_field(json_object_object_get(entry, "status"), "last_recv_date");
      return date.empty() ? "never" : date;
    }
  }
  return "never";
}

void print_fields(const DataSource& data_source) {
  Table table = Table::without_heading(2);
  table.add_row({"Identifier", data_source.vault_id});
  table.add_row({"Name", data_source.vault_name});
  table.add_row({"Type", data_source.type});
  table.add_row({"Description", data_source.description});
  table.add_row({"Index", std::to_string(data_source.index)});
  table.add_row({"Enabled", yes_or_no(data_source.enable)});
  table.add_row({"Last received", last_received(data_source.vault_id)});
  table.print();
}

void show(const ShowOptions& options) {
  if (options.json) {
    print_json(data_source_document(options.id).get());
    return;
  }
  const DataSource data_source = stored_data_source(options.id);
  print_fields(data_source);
  if (!data_source.channel_guid_list.empty()) {
    print_line("\nChannels");
    print_channels({data_source});
  }
  if (!data_source.filter.empty()) {
    print_line("\nFilters");
    print_filters(data_source.filter);
  }
}

}  // namespace

void add_show_command(Command root) {
  const Command command =
      root.subcommand("show", "Show one data source with its channels and filters");
  ShowOptions& options = command.run(show);
  command.argument("ID", options.id, "Its identifier");
  command.flag("--json", options.json,
               "Print the library's document: {\"vault_list\": [...]} with one entry");
  command.footer("Example:\n  devcfg show till-1");
}

}  // namespace devcfg
