// devcfg metadata: the stored metadata.
#include <cstdio>
#include <string>

#include "cli/command_error.h"
#include "cli/commands.h"
#include "cli/output.h"
#include "orvaneip.h"

namespace devcfg {
namespace {

// metadata_remove returns no status, the store itself does.
void remove_metadata(const std::string& key) {
  CMetadata store;
  int status = store.init();
  if (status == metadata_vault::kVaultOk) {
    status = store.remove_metadata(key);
  }
  store.release();
  if (status != metadata_vault::kVaultOk) {
    throw CommandError("the metadata " + in_quotes(key) + " was not removed", status);
  }
  std::printf("metadata %s removed\n", key.c_str());
}

}  // namespace

void add_metadata_commands(Command root) {
  const Command family = root.group("metadata", "Remove metadata");
  const Command remove = family.subcommand("remove", "Remove one piece of metadata");
  std::string& key = remove.run(remove_metadata);
  remove.argument("KEY", key, "Its key");
}

}  // namespace devcfg
