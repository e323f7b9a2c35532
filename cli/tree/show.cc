#include <cstdio>

#include "base/fixed_paths.h"
#include "cli/command_error.h"
#include "cli/output.h"
#include "cli/tree/commands.h"
#include "cli/tree/device_fields.h"
#include "cli/tree/device_tree_file.h"

namespace devcfg {
namespace {

struct Settings {
  std::string file = base::kDeviceTreePath;
  std::string wanted;  // an identifier, or a node
  bool json = false;
  bool show_password = false;
};

// Values are read by the name of the node: get_device takes a number, so it finds no node with
// another form of name.
bool is_builtin(const DeviceTreeFile& tree, const std::string& node) {
  return xmlcfg_get_bool(tree.handle(), false, "device", node.c_str(), "builtin", nullptr);
}

bool is_enabled(const DeviceTreeFile& tree, const std::string& node) {
  char text[6];
  xmlcfg_get_str(tree.handle(), "", text, sizeof(text), "device", node.c_str(), "enable", nullptr);
  return std::string(text) == "true";
}

std::string device_id(const DeviceTreeFile& tree, const std::string& node) {
  return field_text(tree, node, device_fields().front());
}

Json device_object(const DeviceTreeFile& tree, const std::string& node) {
  Json object(json_object_new_object());
  const auto number = node_number(node);
  json_object_object_add(object.get(), "node", json_text(node));
  json_object_object_add(object.get(), "number", number ? json_object_new_int(*number) : nullptr);
  for (const DeviceField& field : device_fields()) {
    json_object_object_add(object.get(), field.option, json_text(field_text(tree, node, field)));
  }
  json_object_object_add(object.get(), "enabled", json_object_new_boolean(is_enabled(tree, node)));
  json_object_object_add(object.get(), "builtin", json_object_new_boolean(is_builtin(tree, node)));
  return object;
}

std::vector<std::string> table_row(const DeviceTreeFile& tree, const std::string& node) {
  const auto number = node_number(node);
  std::vector<std::string> row = {node, number ? std::to_string(*number) : ""};
  for (std::size_t i = 0; i < 3; ++i) {  // the identifier, the name and the type
    row.push_back(field_text(tree, node, device_fields()[i]));
  }
  row.emplace_back(yes_or_no(is_enabled(tree, node)));
  row.emplace_back(yes_or_no(is_builtin(tree, node)));
  return row;
}

void list_nodes(const Settings& settings) {
  const DeviceTreeFile tree(kCfgRead, settings.file);
  const Json list(json_object_new_array());
  Table table({"NODE", "NUMBER", "ID", "NAME", "TYPE", "ENABLED", "BUILT-IN"});
  for (const std::string& node : node_names(tree)) {
    json_object_array_add(list.get(), device_object(tree, node).release());
    table.add_row(table_row(tree, node));
  }
  if (settings.json) {
    print_json(list.get());
  } else {
    table.print();
  }
}

void find_node(const Settings& settings) {
  const DeviceTreeFile tree(kCfgRead, settings.file);
  std::string wanted = settings.wanted;
  const int number = find_device_exist(tree.handle(), wanted.data());
  for (const std::string& node : node_names(tree)) {
    if (number >= 0 && node_number(node) == number && device_id(tree, node) == wanted) {
      print_line(node);
      return;
    }
  }
  throw CommandError("no node has the device id " + settings.wanted);
}

std::string password_text(const DeviceTreeFile& tree, const std::string& node, bool show) {
  const std::string text = field_text(tree, node, password_field());
  return show || text.empty() ? text : "(hidden, --show-password shows it)";
}

void print_node(const DeviceTreeFile& tree, const std::string& node, bool show_password) {
  Table table({"FIELD", "VALUE"});
  table.add_row({"node", node});
  for (const DeviceField& field : device_fields()) {
    table.add_row({field.option, field_text(tree, node, field)});
  }
  table.add_row({password_field().option, password_text(tree, node, show_password)});
  table.add_row({"enabled", yes_or_no(is_enabled(tree, node))});
  table.add_row({"builtin", yes_or_no(is_builtin(tree, node))});
  table.print();
}

// Returns the name of the node, which is given by its name or its number.
std::string wanted_node(const std::string& wanted) {
  const auto number = node_number("_" + wanted);
  const bool is_number = wanted.find_first_not_of("0123456789") == std::string::npos;
  return number && is_number ? node_name(*number) : wanted;
}

void show_node(const Settings& settings) {
  const DeviceTreeFile tree(kCfgRead, settings.file);
  const std::string node = wanted_node(settings.wanted);
  if (const std::string id = device_id(tree, node); id.empty() || id == kNoValue) {
    throw CommandError("there is no device at the node " + node);
  }
  if (!settings.json) {
    print_node(tree, node, settings.show_password);
    return;
  }
  const Json object = device_object(tree, node);
  if (settings.show_password) {
    json_object_object_add(object.get(), password_field().option,
                           json_text(field_text(tree, node, password_field())));
  }
  print_json(object.get());
}

// Adds what the subcommands have in common; returns where the values of its options are.
Settings& add_command(Command command, void (*run)(const Settings&)) {
  Settings& settings = command.run(run);
  command.option("--file", settings.file, "Another device tree than the system's");
  return settings;
}

}  // namespace

void add_tree_show_commands(Command tree) {
  const Command nodes = tree.subcommand("nodes", "List the nodes");
  Settings& nodes_settings = add_command(nodes, list_nodes);
  nodes.flag("--json", nodes_settings.json, "Print JSON");

  const Command find = tree.subcommand("find", "Print the node of a device");
  find.argument("ID", add_command(find, find_node).wanted, "The device's identifier");

  const Command show = tree.subcommand("show", "Show the values of a node");
  Settings& settings = add_command(show, show_node);
  show.argument("NODE", settings.wanted, "The name of a node, as device_007, or its number");
  show.flag("--json", settings.json, "Print JSON");
  show.flag("--show-password", settings.show_password, "Show the password in clear");
}

}  // namespace devcfg
