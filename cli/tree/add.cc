#include <algorithm>
#include <cstdio>
#include <iostream>
#include <map>
#include <optional>

#include "base/fixed_paths.h"
#include "cli/command_error.h"
#include "cli/tree/commands.h"
#include "cli/tree/device_fields.h"
#include "cli/tree/device_tree_file.h"

namespace devcfg {
namespace {

struct Settings {
  std::string file = base::kDeviceTreePath;
  std::map<std::string, std::optional<std::string>> values;  // by DeviceField::option
  bool disabled = false;
  bool read_password = false;
};

int free_number(const DeviceTreeFile& tree) {
  const std::vector<std::string> names = node_names(tree);
  for (int number = 0; number < kMaxDeviceNodes; ++number) {
    if (std::none_of(names.begin(), names.end(),
                     [number](const std::string& name) { return node_number(name) == number; })) {
      return number;
    }
  }
  throw CommandError("the device tree is full: it has " + std::to_string(kMaxDeviceNodes) +
                     " nodes");
}

void store(const DeviceTreeFile& tree, const std::string& node, const DeviceField& field,
           const std::string& value) {
  const char* const* path = field.path;
  if (!xmlcfg_set_str(tree.handle(), value.c_str(), "device", node.c_str(), path[0], path[1],
                      path[2], path[3], nullptr)) {
    throw CommandError("the tree does not accept the value of " + std::string(field.option));
  }
}

std::string read_password() {
  std::string password;
  std::getline(std::cin, password);
  if (password.size() >= password_field().size_bytes) {
    throw CommandError("the password is longer than " +
                       std::to_string(password_field().size_bytes - 1) + " bytes");
  }
  return password;
}

void store_values(const DeviceTreeFile& tree, const std::string& node, const Settings& settings,
                  const std::optional<std::string>& password) {
  // The values of a removed node with this number may still be in the file.
  xmlcfg_remove(tree.handle(), "device", node.c_str(), nullptr);
  for (const DeviceField& field : device_fields()) {
    if (const auto& value = settings.values.at(field.option)) {
      store(tree, node, field, *value);
    }
  }
  if (password) {
    store(tree, node, password_field(), *password);
  }
  xmlcfg_set_str(tree.handle(), settings.disabled ? "false" : "true", "device", node.c_str(),
                 "enable", nullptr);
}

void add_node(const Settings& settings) {
  std::string id = settings.values.at("id").value();
  std::optional<std::string> password;
  if (settings.read_password) {
    password = read_password();  // before the tree is locked: a person may be slow
  }
  DeviceTreeFile tree(kCfgChange, settings.file);
  if (find_device_exist(tree.handle(), id.data()) >= 0) {
    throw CommandError("a node already has the device id " + id);
  }
  const int number = free_number(tree);
  char top[] = "device";
  store_values(tree, node_name(number), settings, password);
  add_device_node(tree.handle(), number, top);
  if (find_device_exist(tree.handle(), id.data()) != number) {
    throw CommandError("the node list of the device tree is full");
  }
  tree.save();
  std::puts(node_name(number).c_str());
}

// Programs read a value cut to the size of their buffer.
Option::Check shorter_than(std::size_t size_bytes) {
  return [size_bytes](const std::string& text) {
    return text.size() < size_bytes ? ""
                                    : "takes at most " + std::to_string(size_bytes - 1) + " bytes";
  };
}

std::string check_identifier(const std::string& text) {
  return text.empty() || text == kNoValue ? "is not an identifier" : "";
}

void add_value(Command command, const DeviceField& field, std::optional<std::string>& value) {
  if (std::string(field.option) == "id") {
    command.argument("ID", value, field.meaning)
        .check(shorter_than(field.size_bytes))
        .check(check_identifier)
        .required();
  } else {
    command.option(std::string("--") + field.option, value, field.meaning)
        .check(shorter_than(field.size_bytes));
  }
}

}  // namespace

void add_tree_add_command(Command tree) {
  const Command command = tree.subcommand("add", "Add a device at the first free node");
  Settings& settings = command.run(add_node);
  for (const DeviceField& field : device_fields()) {
    add_value(command, field, settings.values[field.option]);
  }
  command.flag("--password-stdin", settings.read_password,
               "Read the password at the device from standard input");
  command.flag("--disabled", settings.disabled, "Add it switched off");
  command.option("--file", settings.file, "Another device tree than the system's");
}

}  // namespace devcfg
