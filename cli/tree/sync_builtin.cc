#include <cstdio>

#include "cli/command_error.h"
#include "cli/output.h"
#include "cli/tree/commands.h"
#include "cli/tree/device_tree_file.h"

namespace devcfg {
namespace {

struct SyncOptions {
  bool dry_run = false;
  bool json = false;
};

void print_changes(const BuiltinChanges& changes) {
  Table table({"CHANGE", "NODE", "ENTRY"});
  for (const std::string& node : changes.removed) {
    table.add_row({"remove", node, ""});
  }
  for (const BuiltinAddition& addition : changes.added) {
    table.add_row({"add", addition.node_name, "builtin_" + std::to_string(addition.entry)});
  }
  table.print();
}

void print_changes_json(const BuiltinChanges& changes) {
  const Json document(json_object_new_object());
  json_object* removed = json_object_new_array();
  json_object* added = json_object_new_array();
  for (const std::string& node : changes.removed) {
    json_object_array_add(removed, json_object_new_string(node.c_str()));
  }
  for (const BuiltinAddition& addition : changes.added) {
    json_object* object = json_object_new_object();
    json_object_object_add(object, "node", json_object_new_string(addition.node_name.c_str()));
    json_object_object_add(object, "entry", json_object_new_int(addition.entry));
    json_object_array_add(added, object);
  }
  json_object_object_add(document.get(), "remove", removed);
  json_object_object_add(document.get(), "add", added);
  print_json(document.get());
}

void preview(bool json) {
  BuiltinChanges changes;
  const int result = devcfg_preview_builtin(changes);
  if (result != 0 && !changes.limit_reached) {
    throw CommandError("the device tree or the built-in list cannot be opened (--log shows which)");
  }
  if (json) {
    print_changes_json(changes);
  } else if (changes.removed.empty() && changes.added.empty()) {
    std::puts("nothing to change");
  } else {
    print_changes(changes);
  }
  if (changes.limit_reached) {
    throw CommandError("the limit of " + std::to_string(kMaxDeviceNodes) +
                       " nodes leaves no room for a further entry");
  }
}

void synchronize() {
  if (devcfg_check_builtin() != 0) {
    throw CommandError("the device tree does not match the built-in list (--log shows why)");
  }
  std::puts("the device tree matches the built-in list");
}

void sync_builtin(const SyncOptions& options) {
  if (options.dry_run) {
    preview(options.json);
  } else {
    synchronize();
  }
}

}  // namespace

void add_tree_sync_builtin_command(Command tree) {
  const Command command =
      tree.subcommand("sync-builtin", "Update the nodes to match the built-in list");
  SyncOptions& options = command.run(sync_builtin);
  const Option dry_run =
      command.flag("--dry-run", options.dry_run, "Show what would change, and stop");
  command.flag("--json", options.json, "Print JSON").needs(dry_run);
}

}  // namespace devcfg
