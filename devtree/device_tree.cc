#include "devtree/device_tree.h"

#include <cstring>
#include <string>

#include "base/fixed_paths.h"
#include "devtree/internal/config_file.h"
#include "devtree/internal/node_list.h"
#include "devtree/internal/tree_values.h"
#include "foundation/split.h"
#include "platform/log_sinks.h"

namespace {

using orvaneip::kDeviceTop;
using orvaneip::kNodeListName;
using orvaneip::kNoValue;
using orvaneip::NodeName;
using orvaneip::read_value;

bool has_device_id(void* tree, const char* top, const char* name, const char* device_id) {
  char stored[kDeviceTextBytes];
  read_value(tree, kNoValue, stored, top, name, "device_id");
  return std::strcmp(stored, device_id) == 0;
}

int find_device(void* tree, const char* device_id, const char* top) {
  if (tree == nullptr || device_id == nullptr || top == nullptr) {
    return -1;
  }
  char list[kNodeListBytes];
  read_value(tree, kNoValue, list, top, kNodeListName);
  if (std::strcmp(list, kNoValue) == 0) {
    return -1;
  }
  for (const std::string& name : split(list, ',')) {
    if (name != kNoValue && has_device_id(tree, top, name.c_str(), device_id)) {
      if (const auto number = orvaneip::node_number(name)) {
        return *number;
      }
    }
  }
  return -1;
}

// Reads the values of node `name`; absent ones are empty.
void read_fields(void* tree, const NodeName& name, TDeviceInfo& info) {
  const auto read = [&](auto& field, auto... path) {
    read_value(tree, "", field, kDeviceTop, name.text, path...);
  };
  read(info.type, "type");
  read(info.brand, "brand");
  read(info.device_name, "device_name");
  read(info.plugin, "plugin");
  read(info.install_path, "install_path");
  read(info.description, "description");
  read(info.conn_type, "src_property_list", "conn", "type");
  read(info.lan_ip, "src_property_list", "conn", "lan", "ip");
  read(info.lan_port, "src_property_list", "conn", "lan", "port");
  read(info.com_port, "src_property_list", "conn", "com", "com");
  read(info.baudrate, "src_property_list", "conn", "com", "baudrate");
  read(info.src_id, "src_property_list", "id");
  read(info.src_pwd, "src_property_list", "pwd");
  read(info.recording_cam, "src_property_list", "binding", "recording_cam");
}

bool is_enabled(void* tree, const NodeName& name) {
  char enable[sizeof("false")];
  read_value(tree, "false", enable, kDeviceTop, name.text, "enable");
  return std::strcmp(enable, "true") == 0;
}

}  // namespace

int devcfg_get_device_node(char* device_id) {
  const orvaneip::ConfigFile file(kCfgRead, base::kDeviceTreePath);
  if (!file.is_open()) {
    orvane_log_debug("[libdevcfg] open %s fail", __func__);
    return -1;
  }
  return find_device_exist(file.handle(), device_id);
}

int find_device_exist(void* tree, char* device_id) {
  return find_device(tree, device_id, kDeviceTop);
}

int find_device_exist_access(void* tree, char* device_id, char* top) {
  return find_device(tree, device_id, top);
}

bool add_device_node(void* tree, int number, char* top) {
  if (tree == nullptr || top == nullptr) {
    return true;
  }
  const NodeName name = orvaneip::node_name(number);
  char stored[kNodeListBytes];
  read_value(tree, kNoValue, stored, top, kNodeListName);
  std::string list = stored;
  if (list.empty() || list == kNoValue) {
    list = name.text;
  } else {
    list.append(",").append(name.text);
  }
  if (list.size() >= kNodeListBytes) {
    orvane_log_debug("[libdevcfg] %s, node list of %s is full, %s was not added", __func__, top,
                     name.text);
    return true;
  }
  xmlcfg_set_str(tree, list.c_str(), top, kNodeListName, nullptr);
  return true;
}

bool get_device(void* tree, int number, TDeviceInfo* info) {
  if (info == nullptr) {
    return false;
  }
  *info = {};
  if (tree == nullptr) {
    return false;
  }
  const NodeName name = orvaneip::node_name(number);
  read_value(tree, kNoValue, info->device_id, kDeviceTop, name.text, "device_id");
  read_fields(tree, name, *info);
  info->enable = is_enabled(tree, name);
  if (std::strcmp(info->device_id, kNoValue) == 0) {
    return false;
  }
  info->node_no = number;
  return true;
}

int devcfg_find_device_node(void* tree, char* list, char* device_id, char* node_name) {
  if (tree == nullptr || list == nullptr || device_id == nullptr || node_name == nullptr) {
    return 0;
  }
  std::vector<char*> names = orvaneip::split_in_place(list);
  if (names.size() > kMaxDeviceNodes) {
    orvane_log_debug("[libdevcfg] %s, %zu node names, those beyond %d are ignored", __func__,
                     names.size(), kMaxDeviceNodes);
    names.resize(kMaxDeviceNodes);
  }
  for (const char* name : names) {
    if (has_device_id(tree, "terminal", name, device_id)) {
      std::memcpy(node_name, name, std::strlen(name) + 1);
      break;
    }
  }
  return 0;
}
