#include <cstdio>
#include <memory>

#include "cli/atomic_file.h"
#include "cli/data_sources/commands.h"
#include "cli/data_sources/vault_document.h"
#include "cli/output.h"

namespace devcfg {
namespace {

void export_vault(const std::string& file) {
  const Json document = vault_document(Vault().data_sources());
  if (file == "-") {
    std::puts(document_text(document.get()));  // bytes as they are: import takes them back
  } else {
    write_file_atomically(file, std::string(document_text(document.get())) + '\n');
  }
}

}  // namespace

void register_export(CLI::App& app) {
  auto file = std::make_shared<std::string>("-");
  CLI::App* command =
      app.add_subcommand("export", "Write the whole vault as one JSON document")
          ->footer(
              "The document holds one moment's state. A file is replaced in one step, and only "
              "its owner\nmay read it. Texts that are not UTF-8 are kept byte for byte.\n"
              "Example:\n  devcfg export backup.json");
  command->add_option("FILE", *file, "Where to; standard output by default");
  command->callback([file] { export_vault(*file); });
}

}  // namespace devcfg
