#include <cstdio>
#include <optional>

#include "cli/atomic_file.h"
#include "cli/data_sources/commands.h"
#include "cli/data_sources/vault_document.h"
#include "cli/output.h"

namespace devcfg {
namespace {

void export_vault(const std::optional<std::string>& file) {
  const Json document = vault_document(Vault().data_sources());
  if (file.value_or("-") == "-") {
    std::puts(document_text(document.get()));  // bytes as they are: import takes them back
  } else {
    write_file_atomically(*file, std::string(document_text(document.get())) + '\n');
  }
}

}  // namespace

void add_export_command(Command root) {
  const Command command = root.subcommand("export", "Write the whole vault as one JSON document");
  std::optional<std::string>& file = command.run(export_vault);
  command.argument("FILE", file, "Where to; standard output by default");
  command.footer(
      "The document holds one moment's state. A file is replaced in one step, and only "
      "its owner\nmay read it. Texts that are not UTF-8 are kept byte for byte.\n"
      "Example:\n  devcfg export backup.json");
}

}  // namespace devcfg
