#include <cstdio>
#include <memory>

#include "cli/output.h"
#include "cli/refusal.h"
#include "cli/tree/device_fields.h"
#include "cli/tree/tree_commands.h"
#include "cli/tree/tree_file.h"

namespace devcfg {
namespace {

struct Settings {
  std::string file = system_device_tree();
  std::string wanted;  // an identifier, or a node
  bool json = false;
  bool show_password = false;
};

bool is_builtin(const TreeFile& tree, const std::string& node) {
  return xmlcfg_get_bool(tree.handle(), false, "device", node.c_str(), "builtin", nullptr);
}

Json device_object(const TreeFile& tree, const std::string& node, const TDeviceInfo& info) {
  Json object(json_object_new_object());
  json_object_object_add(object.get(), "node", json_object_new_string(node.c_str()));
  for (const DeviceField& field : device_fields()) {
    json_object_object_add(object.get(), field.option, json_object_new_string(field.text(info)));
  }
  json_object_object_add(object.get(), "enabled", json_object_new_boolean(info.enable));
  json_object_object_add(object.get(), "builtin", json_object_new_boolean(is_builtin(tree, node)));
  return object;
}

void list_nodes(const Settings& settings) {
  const TreeFile tree(kCfgRead, settings.file);
  const Json list(json_object_new_array());
  Table table({"NODE", "ID", "NAME", "TYPE", "ENABLED", "BUILT-IN"});
  for (const std::string& node : node_names(tree)) {
    TDeviceInfo info;
    get_device(tree.handle(), *node_number(node), &info);
    json_object_array_add(list.get(), device_object(tree, node, info).release());
    table.add_row({node, info.device_id, info.device_name, info.type, info.enable ? "yes" : "no",
                   is_builtin(tree, node) ? "yes" : "no"});
  }
  if (settings.json) {
    print_json(list.get());
  } else {
    table.print();
  }
}

void find_node(Settings settings) {
  const TreeFile tree(kCfgRead, settings.file);
  const int number = find_device_exist(tree.handle(), settings.wanted.data());
  if (number < 0) {
    throw Refusal("no node has the device id " + settings.wanted);
  }
  std::puts(node_name(number).c_str());
}

std::string password_text(const TDeviceInfo& info, bool show) {
  const std::string text = password_field().text(info);
  return show || text.empty() ? text : "(hidden, --show-password shows it)";
}

void print_node(const TreeFile& tree, const std::string& node, const TDeviceInfo& info,
                bool show_password) {
  Table table({"FIELD", "VALUE"});
  table.add_row({"node", node});
  for (const DeviceField& field : device_fields()) {
    table.add_row({field.option, field.text(info)});
  }
  table.add_row({password_field().option, password_text(info, show_password)});
  table.add_row({"enabled", info.enable ? "yes" : "no"});
  table.add_row({"builtin", is_builtin(tree, node) ? "yes" : "no"});
  table.print();
}

void show_node(const Settings& settings) {
  const TreeFile tree(kCfgRead, settings.file);
  const auto number = node_number(settings.wanted);
  TDeviceInfo info;
  if (!number || !get_device(tree.handle(), *number, &info)) {
    throw Refusal("there is no device at the node " + settings.wanted);
  }
  const std::string node = node_name(*number);
  if (!settings.json) {
    print_node(tree, node, info, settings.show_password);
    return;
  }
  const Json object = device_object(tree, node, info);
  if (settings.show_password) {
    json_object_object_add(object.get(), password_field().option,
                           json_object_new_string(password_field().text(info)));
  }
  print_json(object.get());
}

void add_file_option(CLI::App& command, const std::shared_ptr<Settings>& settings) {
  command.add_option("--file", settings->file, "Another device tree than the system's");
}

}  // namespace

void add_show_commands(CLI::App& tree) {
  auto settings = std::make_shared<Settings>();

  CLI::App* nodes = tree.add_subcommand("nodes", "List the nodes");
  add_file_option(*nodes, settings);
  nodes->add_flag("--json", settings->json, "Print JSON");
  nodes->callback([=] { list_nodes(*settings); });

  CLI::App* find = tree.add_subcommand("find", "Tell the node of a device");
  add_file_option(*find, settings);
  find->add_option("ID", settings->wanted, "The device's identifier")->required();
  find->callback([=] { find_node(*settings); });

  CLI::App* show = tree.add_subcommand("show", "Show the values of a node");
  add_file_option(*show, settings);
  show->add_option("NODE", settings->wanted, "device_NNN or its number")->required();
  show->add_flag("--json", settings->json, "Print JSON");
  show->add_flag("--show-password", settings->show_password, "Show the password in clear");
  show->callback([=] { show_node(*settings); });
}

}  // namespace devcfg
