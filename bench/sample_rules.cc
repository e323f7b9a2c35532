#include "bench/sample_rules.h"

#include <dlfcn.h>
#include <strings.h>

#include <cstring>
#include <fstream>
#include <string_view>

#include "bench/ratio.h"

namespace {

std::string rule_file;  // is opened in place of the fixed path

}  // namespace

// The program's own definition takes precedence over the platform's.
void* xmlcfg_open(TCfgMode mode, const char* path) {
  static const auto platform_open =
      reinterpret_cast<decltype(&xmlcfg_open)>(dlsym(RTLD_NEXT, "xmlcfg_open"));
  const bool is_fixed_path = std::string_view(path).ends_with("/etc/config/kfilter.xml");
  return platform_open(mode, is_fixed_path ? rule_file.c_str() : path);
}

namespace bench {
namespace {

template <typename... Names>
void set(void* tree, const std::string& value, Names... path) {
  require(xmlcfg_set_str(tree, value.c_str(), "filter", path..., nullptr), "storing a sample rule");
}

std::string numbered(std::string prefix, int number) {
  return prefix.append(std::to_string(number));
}

std::string list_of(const char* prefix, int count) {
  std::string list;
  for (int i = 0; i < count; ++i) {
    list.append(i > 0 ? "," : "").append(numbered(prefix, i));
  }
  return list;
}

void write_rule(void* tree, const char* device, const char* filter, int number) {
  const std::string rule = numbered("r", number);
  set(tree, numbered("Rule ", number), device, filter, rule.c_str(), "name");
  set(tree, std::to_string(number % 3), device, filter, rule.c_str(), "type");
  set(tree, "1", device, filter, rule.c_str(), "enable");
  set(tree, std::string("SALE ") + filter + " ITEM " + rule, device, filter, rule.c_str(),
      "target");
  set(tree, "Item sold", device, filter, rule.c_str(), "result");
}

void write_device(void* tree, int number, int filters, int rules) {
  const std::string device = numbered("d", number);
  set(tree, numbered("ID", number), device.c_str(), "device_id");
  set(tree, list_of("f", filters), device.c_str(), "filter_node_list");
  for (int i = 0; i < filters; ++i) {
    const std::string filter = numbered("f", i);
    set(tree, "Receipts", device.c_str(), filter.c_str(), "name");
    set(tree, "1", device.c_str(), filter.c_str(), "enable");
    set(tree, list_of("r", rules), device.c_str(), filter.c_str(), "rule_node_list");
    for (int j = 0; j < rules; ++j) {
      write_rule(tree, device.c_str(), filter.c_str(), j);
    }
  }
}

template <std::size_t kSize, typename... Names>
void read_text(void** tree, char (&buffer)[kSize], Names... path) {
  xmltree_get_str(tree, "", buffer, static_cast<int>(kSize), "filter", path..., nullptr);
}

template <std::size_t kSize, typename... Names>
void copy_text(void** tree, char (&buffer)[kSize], Names... path) {
  std::memset(buffer, 0, kSize);
  read_text(tree, buffer, path...);
}

template <typename Use>
void for_each_name(char* list, Use use) {
  char* rest = nullptr;
  for (char* name = strtok_r(list, ",", &rest); name != nullptr;
       name = strtok_r(nullptr, ",", &rest)) {
    use(name);
  }
}

void copy_rules(void** tree, const char* device, const char* filter, std::vector<rule>& rules) {
  char list[512];
  copy_text(tree, list, device, filter, "rule_node_list");
  for_each_name(list, [&](const char* name) {
    rule record;
    std::memset(&record, 0, sizeof(record));
    read_text(tree, record.name, device, filter, name, "name");
    record.type = xmltree_get_int(tree, -1, "filter", device, filter, name, "type", nullptr);
    record.enable = xmltree_get_int(tree, 0, "filter", device, filter, name, "enable", nullptr);
    read_text(tree, record.target, device, filter, name, "target");
    read_text(tree, record.result, device, filter, name, "result");
    rules.push_back(record);
  });
}

void copy_filters(void** tree, const char* device, std::vector<filter>& filters) {
  char list[512];
  copy_text(tree, list, device, "filter_node_list");
  filter record;
  for_each_name(list, [&](const char* name) {
    record.rule_list.clear();
    copy_text(tree, record.name, device, name, "name");
    record.enable = xmltree_get_int(tree, 0, "filter", device, name, "enable", nullptr);
    copy_rules(tree, device, name, record.rule_list);
    filters.push_back(record);
  });
}

}  // namespace

SampleRules::SampleRules(int devices, int filters, int rules) {
  std::ofstream(file()).close();
  rule_file = file();
  void* tree = xmlcfg_open(kCfgChange, file().c_str());
  require(tree != nullptr, "opening the sample rule file");
  set(tree, list_of("d", devices), "device_node_list");
  for (int i = 0; i < devices; ++i) {
    write_device(tree, i, filters, rules);
  }
  require(xmlcfg_close(tree, true), "saving the sample rule file");
}

std::vector<dev_filter> copying_read(const std::string& file) {
  std::vector<dev_filter> devices;
  void* handle = xmlcfg_open(kCfgRead, file.c_str());
  void** tree = xmlcfg_export_xmltree(handle, "filter", nullptr);
  xmlcfg_close(handle, true);
  char list[1024];
  copy_text(tree, list, "device_node_list");
  for_each_name(list, [&](const char* name) {
    dev_filter record;
    std::memset(record.device_id, 0, sizeof(record.device_id));
    copy_filters(tree, name, record.filter_list);
    if (!record.filter_list.empty()) {
      copy_text(tree, record.device_id, name, "device_id");
      devices.push_back(record);
    }
  });
  xmltree_destroy(tree);
  return devices;
}

int bare_scan(const char* text, const char* device_id, const std::vector<dev_filter>& devices) {
  for (const dev_filter& device : devices) {
    if (strcasecmp(device.device_id, device_id) != 0) {
      continue;
    }
    int number = 0;
    for (const filter& entry : device.filter_list) {
      for (const rule& line : entry.rule_list) {
        if (std::strcmp(line.target, text) == 0) {
          return number;
        }
        ++number;
      }
    }
    return -1;
  }
  return -1;
}

bool equal(const std::vector<dev_filter>& one, const std::vector<dev_filter>& other) {
  const auto same_rule = [](const rule& a, const rule& b) {
    return std::memcmp(&a, &b, sizeof(rule)) == 0;
  };
  const auto same_filter = [&](const filter& a, const filter& b) {
    return std::strcmp(a.name, b.name) == 0 && a.enable == b.enable &&
           std::equal(a.rule_list.begin(), a.rule_list.end(), b.rule_list.begin(),
                      b.rule_list.end(), same_rule);
  };
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [&](const dev_filter& a, const dev_filter& b) {
                      return std::strcmp(a.device_id, b.device_id) == 0 &&
                             std::equal(a.filter_list.begin(), a.filter_list.end(),
                                        b.filter_list.begin(), b.filter_list.end(), same_filter);
                    });
}

}  // namespace bench
