#include <cstdio>
#include <filesystem>
#include <memory>

#include "cli/output.h"
#include "cli/command_error.h"
#include "cli/tree/tree_commands.h"
#include "cli/tree/device_tree_file.h"

namespace devcfg {
namespace {

void init() {
  const std::string file = system_device_tree();
  std::error_code unless_it_exists;  // initial_xml tells whether it worked
  std::filesystem::create_directories(std::filesystem::path(file).parent_path(), unless_it_exists);
  if (!initial_xml()) {
    throw Refusal("the device tree " + file + " cannot be created");
  }
  std::printf("the device tree is %s\n", file.c_str());
}

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
    throw Refusal("the device tree or the built-in list cannot be opened (--log tells which)");
  }
  if (json) {
    print_changes_json(changes);
  } else if (changes.removed.empty() && changes.added.empty()) {
    std::puts("nothing to change");
  } else {
    print_changes(changes);
  }
  if (changes.limit_reached) {
    throw Refusal("the limit of 128 nodes leaves no place for a further entry");
  }
}

void synchronise() {
  if (devcfg_check_builtin() != 0) {
    throw Refusal("the device tree does not match the built-in list (--log tells why)");
  }
  std::puts("the device tree matches the built-in list");
}

std::size_t count_events(const TreeFile& tree, const std::string& device) {
  constexpr char kTop[] = "device_event_root";
  std::size_t count = 0;
  for (const std::string& terminal :
       listed_names(tree, kTop, device.c_str(), "terminal_node_list")) {
    count += listed_names(tree, kTop, device.c_str(), terminal.c_str(), "event_node_list").size();
  }
  return count;
}

void clear_events(const std::string& file, std::string device) {
  const TreeFile tree(kCfgRead, file);
  const std::size_t count = count_events(tree, device);
  if (!remove_event_in_table(tree.handle(), device.data())) {
    throw Refusal("the event service did not remove every event of " + device +
                  " (--log tells which)");
  }
  print_line(count == 0 ? "no events recorded for " + device
                        : counted(count, "event") + " of " + device + " cleared");
}

void add_sync_builtin(CLI::App& tree) {
  auto dry_run = std::make_shared<bool>(false);
  auto json = std::make_shared<bool>(false);
  CLI::App* command =
      tree.add_subcommand("sync-builtin", "Bring the nodes into line with the built-in list");
  CLI::Option* dry = command->add_flag("--dry-run", *dry_run, "Show what would change, and stop");
  command->add_flag("--json", *json, "Print JSON")->needs(dry);
  command->callback([=] { *dry_run ? preview(*json) : synchronise(); });
}

void add_clear_events(CLI::App& tree) {
  auto file = std::make_shared<std::string>();
  auto device = std::make_shared<std::string>();
  CLI::App* command =
      tree.add_subcommand("clear-events", "Have the event service remove the events of a device");
  command->add_option("FILE", *file, "The event tree, which is only read")->required();
  command->add_option("DEVICE", *device, "The device's node, device_NNN")->required();
  command->callback([=] { clear_events(*file, *device); });
}

}  // namespace

void add_tree_file_commands(CLI::App& tree) {
  tree.add_subcommand("init", "Create the device tree if there is none, and its folder")
      ->callback(init);
  add_sync_builtin(tree);
  add_clear_events(tree);
}

}  // namespace devcfg
