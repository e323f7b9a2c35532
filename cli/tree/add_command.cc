#include <algorithm>
#include <cstdio>
#include <iostream>
#include <map>
#include <memory>

#include "cli/command_error.h"
#include "cli/tree/device_fields.h"
#include "cli/tree/tree_commands.h"
#include "cli/tree/device_tree_file.h"

namespace devcfg {
namespace {

struct Settings {
  std::string file = system_device_tree();
  std::map<std::string, std::string> values;  // by DeviceField::option
  bool disabled = false;
  bool read_password = false;
  std::string password;
};

int free_number(const TreeFile& tree) {
  const std::vector<std::string> names = node_names(tree);
  for (int number = 0; number < kMaxDeviceNodes; ++number) {
    if (std::none_of(names.begin(), names.end(),
                     [number](const std::string& name) { return node_number(name) == number; })) {
      return number;
    }
  }
  throw Refusal("the device tree is full: it has 128 nodes");
}

void store(const TreeFile& tree, const std::string& node, const DeviceField& field,
           const std::string& value) {
  const char* const* path = field.path;
  if (!xmlcfg_set_str(tree.handle(), value.c_str(), "device", node.c_str(), path[0], path[1],
                      path[2], path[3], nullptr)) {
    throw Refusal("the tree does not take the value of " + std::string(field.option));
  }
}

std::string read_password() {
  std::string password;
  std::getline(std::cin, password);
  if (password.size() >= password_field().size_bytes) {
    throw Refusal("the password is longer than 127 bytes");
  }
  return password;
}

void store_values(const TreeFile& tree, const std::string& node, const Settings& settings) {
  // A number that was used before may have left its values behind.
  xmlcfg_remove(tree.handle(), "device", node.c_str(), nullptr);
  for (const DeviceField& field : device_fields()) {
    if (const auto given = settings.values.find(field.option); given != settings.values.end()) {
      store(tree, node, field, given->second);
    }
  }
  if (settings.read_password) {
    store(tree, node, password_field(), settings.password);
  }
  xmlcfg_set_str(tree.handle(), settings.disabled ? "false" : "true", "device", node.c_str(),
                 "enable", nullptr);
}

void add_node(Settings settings) {
  std::string id = settings.values.at("id");
  if (settings.read_password) {
    settings.password = read_password();  // other writers do not wait for a person
  }
  TreeFile tree(kCfgChange, settings.file);
  if (find_device_exist(tree.handle(), id.data()) >= 0) {
    throw Refusal("a node has the device id " + id + " already");
  }
  const int number = free_number(tree);
  char top[] = "device";
  store_values(tree, node_name(number), settings);
  add_device_node(tree.handle(), number, top);
  if (find_device_exist(tree.handle(), id.data()) != number) {
    throw Refusal("the node list of the device tree is full");
  }
  tree.save();
  std::puts(node_name(number).c_str());
}

// What programs read is cut to the size of their buffers.
CLI::Validator shorter_than(std::size_t size_bytes) {
  return {[size_bytes](std::string& text) -> std::string {
            return text.size() < size_bytes
                       ? ""
                       : "takes at most " + std::to_string(size_bytes - 1) + " bytes";
          },
          ""};
}

CLI::Validator an_identifier() {
  return {[](std::string& text) -> std::string {
            return text.empty() || text == kNoValue ? "stands for no device" : "";
          },
          ""};
}

void add_value(CLI::App& command, const std::shared_ptr<Settings>& settings,
               const DeviceField& field) {
  const std::string option = field.option;
  const bool is_id = option == "id";
  CLI::Option* value = command.add_option_function<std::string>(
      is_id ? "ID" : "--" + option,
      [settings, option](const std::string& text) { settings->values[option] = text; },
      field.meaning);
  value->check(shorter_than(field.size_bytes));
  if (is_id) {
    value->required()->check(an_identifier());
  }
}

}  // namespace

void add_add_command(CLI::App& tree) {
  auto settings = std::make_shared<Settings>();
  CLI::App* command = tree.add_subcommand("add", "Add a device at the first free node");
  for (const DeviceField& field : device_fields()) {
    add_value(*command, settings, field);
  }
  command->add_flag("--password-stdin", settings->read_password,
                    "Read the password at the device from standard input");
  command->add_flag("--disabled", settings->disabled, "Add it switched off");
  command->add_option("--file", settings->file, "Another device tree than the system's");
  command->callback([=] { add_node(*settings); });
}

}  // namespace devcfg
