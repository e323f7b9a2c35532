#include <algorithm>

#include "cli/command_error.h"
#include "cli/data_sources/commands.h"
#include "cli/output.h"
#include "cli/raw_arguments.h"
#include "cli/vault.h"

namespace devcfg {
namespace {

// Returns each once, in the order given. Throws CommandError when one is unknown.
std::vector<DataSource> find_all(const std::vector<std::string>& ids) {
  std::vector<DataSource> found;
  for (const std::string& id : ids) {
    const bool repeated = std::any_of(found.begin(), found.end(), [&id](const DataSource& earlier) {
      return earlier.vault_id == id;
    });
    if (!repeated) {
      found.push_back(stored_data_source(id));
    }
  }
  return found;
}

void remove_one(const DataSource& data_source) {
  std::string id = data_source.vault_id;
  devcfg_remove_device(id.data(), nullptr, nullptr);
  if (Vault().find(id)) {
    throw CommandError(not_stored("the removal of " + in_quotes(id)));
  }
  print_line("removed " + id + " (" + data_source.vault_name + ")");
}

void reject_brackets() {
  for (const std::string& argument : raw_arguments) {
    if (argument.starts_with('[') && argument.ends_with(']')) {
      throw CommandError("an identifier in square brackets cannot be removed from here: " +
                         in_quotes(argument));
    }
  }
}

void remove(const std::vector<std::string>& ids) {
  reject_brackets();
  for (const DataSource& data_source : find_all(ids)) {
    remove_one(data_source);
  }
}

}  // namespace

void add_remove_command(Command root) {
  const Command command =
      root.subcommand("remove", "Remove data sources with their channels and filters");
  std::vector<std::string>& ids = command.run(remove);
  command.argument("ID", ids, "The identifiers");
  command.footer(
      "Nothing is removed when one of the identifiers is unknown.\n"
      "Example:\n  devcfg remove till-1 till-2");
}

}  // namespace devcfg
