#include "cli/data_sources/commands.h"
#include "cli/data_sources/vault_change.h"
#include "cli/data_sources/vault_document.h"
#include "cli/json_file.h"
#include "cli/output.h"

namespace devcfg {
namespace {

struct ImportOptions {
  std::string file;
  bool dry_run = false;
  bool replace = false;
};

void check_conflicts(const VaultChange& change, const std::vector<DataSource>& staying,
                     Problems& problems) {
  for (std::size_t i = 0; i < change.added.size(); ++i) {
    const DataSource& added = change.added[i];
    for (const DataSource& stored : staying) {
      if (stored.vault_id == added.vault_id) {
        problems.add(entry_of("vault_list", i) + ".vault_id",
                     in_quotes(added.vault_id) + " is stored already");
      }
      if (stored.index == added.index && added.index >= 0) {
        problems.add(entry_of("vault_list", i) + ".index", std::to_string(added.index) +
                                                               " is the index of the stored " +
                                                               in_quotes(stored.vault_id));
      }
    }
  }
  const std::size_t total = staying.size() + change.added.size();
  if (total > metadata_vault::kMaxDataSources) {
    problems.add("vault_list", std::to_string(total) + " data sources, " +
                                   std::to_string(staying.size()) +
                                   " of them stored already, are more than " +
                                   std::to_string(metadata_vault::kMaxDataSources));
  }
}

VaultChange plan(const ImportOptions& options) {
  const Json document = read_json_file(options.file);
  std::vector<DataSource> stored = Vault().data_sources();
  Problems problems;
  VaultChange change;
  change.added = read_vault_document(document.get(), problems);
  if (options.replace) {
    change.removed.swap(stored);
  }
  check_conflicts(change, stored, problems);
  problems.throw_if_any("nothing was changed: " + shown_name(options.file));
  return change;
}

void add_rows(Table& table, const char* action, const std::vector<DataSource>& data_sources) {
  for (const DataSource& data_source : data_sources) {
    table.add_row({action, data_source.vault_id, data_source.vault_name,
                   std::to_string(data_source.index),
                   std::to_string(data_source.channel_guid_list.size()),
                   std::to_string(data_source.filter.size())});
  }
}

void print_change(const VaultChange& change, const char* removed, const char* added) {
  if (!change.removed.empty() || !change.added.empty()) {
    Table table({"ACTION", "ID", "NAME", "INDEX", "CHANNELS", "FILTERS"});
    add_rows(table, removed, change.removed);
    add_rows(table, added, change.added);
    table.print();
  }
}

void import_vault(const ImportOptions& options) {
  const VaultChange change = plan(options);
  if (options.dry_run) {
    print_change(change, "remove", "add");
    print_line("dry run: nothing was changed");
    return;
  }
  apply(change);
  print_change(change, "removed", "added");
  print_line(pluralize(change.removed.size(), "data source") + " removed, " +
             std::to_string(change.added.size()) + " added");
}

}  // namespace

void add_import_command(Command root) {
  const Command command =
      root.subcommand("import", "Add the data sources of a document that export has written");
  ImportOptions& options = command.run(import_vault);
  command.argument("FILE", options.file, "The document; - is standard input");
  command.flag("--dry-run", options.dry_run, "Show what would be done, and change nothing");
  command.flag("--replace", options.replace, "Remove all stored data sources first");
  command.footer(
      "The whole document is checked first; when anything is wrong with it, every problem is\n"
      "reported and nothing is changed.\n"
      "Example:\n  devcfg import backup.json --dry-run");
}

}  // namespace devcfg
