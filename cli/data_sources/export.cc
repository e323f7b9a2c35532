#include <cstdio>
#include <filesystem>
#include <optional>

#include "base/atomic_file.h"
#include "base/failure.h"
#include "cli/command_error.h"
#include "cli/data_sources/commands.h"
#include "cli/data_sources/vault_document.h"
#include "cli/output.h"

namespace devcfg {
namespace {

namespace fs = std::filesystem;

// Returns the file to replace: the target of a symbolic link, so that the link stays.
fs::path target_of(const std::string& name) {
  std::error_code error;
  const fs::file_status status = fs::status(name, error);
  if (!fs::exists(status)) {
    return name;
  }
  if (!fs::is_regular_file(status)) {
    throw CommandError("cannot write " + name + ": it is not a regular file");
  }
  const fs::path target = fs::canonical(name, error);
  return error ? fs::path(name) : target;
}

void write_file(const std::string& name, const std::string& bytes) {
  try {
    base::write_file(target_of(name), bytes);
  } catch (const base::Failure& failure) {
    throw CommandError("cannot write " + name + ": " + failure.reason());
  }
}

void export_vault(const std::optional<std::string>& file) {
  const Json document = vault_document(Vault().data_sources());
  if (file.value_or("-") == "-") {
    std::puts(document_text(document.get()));  // unchanged bytes, which import reads
  } else {
    write_file(*file, std::string(document_text(document.get())) + '\n');
  }
}

}  // namespace

void add_export_command(Command root) {
  const Command command = root.subcommand("export", "Write the whole vault as one JSON document");
  std::optional<std::string>& file = command.run(export_vault);
  command.argument("FILE", file, "Where to; standard output by default");
  command.footer(
      "The document is one consistent state of the vault. A file is replaced in one step, and\n"
      "only its owner may read it. Bytes that are not UTF-8 are kept.\n"
      "Example:\n  devcfg export backup.json");
}

}  // namespace devcfg
