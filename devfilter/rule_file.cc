#include "devfilter/rule_file.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <optional>

#include "base/fixed_paths.h"
#include "devtree/device_tree.h"
#include "devtree/internal/config_file.h"
#include "devtree/internal/node_list.h"
#include "platform/config_tree.h"
#include "platform/log_sinks.h"

namespace {

using base::kRuleFilePath;
using orvaneip::split_in_place;

constexpr char kTop[] = "filter";

class ExportedTree {
 public:
  explicit ExportedTree(void** tree) : tree_(tree) {}
  ~ExportedTree() {
    if (tree_ != nullptr) {
      xmltree_destroy(tree_);
    }
  }
  ExportedTree(const ExportedTree&) = delete;
  ExportedTree& operator=(const ExportedTree&) = delete;

  void** get() const { return tree_; }

 private:
  void** tree_;
};

template <std::size_t kSize, typename... Names>
void read_text(void** tree, char (&buffer)[kSize], Names... path) {
  xmltree_get_str(tree, "", buffer, static_cast<int>(kSize), kTop, path..., nullptr);
}

template <typename... Names>
int read_number(void** tree, int default_value, Names... path) {
  return xmltree_get_int(tree, default_value, kTop, path..., nullptr);
}

// `record` is zeroed.
void read_rule(void** tree, const char* device_node, const char* filter_node, const char* rule_node,
               rule& record) {
  read_text(tree, record.name, device_node, filter_node, rule_node, "name");
  record.type = read_number(tree, -1, device_node, filter_node, rule_node, "type");
  record.enable = read_number(tree, 0, device_node, filter_node, rule_node, "enable");
  read_text(tree, record.target, device_node, filter_node, rule_node, "target");
  read_text(tree, record.result, device_node, filter_node, rule_node, "result");
}

// Makes the kernel map the pages of the records at once: every record is written whole, and a page
// fault for each half of one costs more than the rest of the reading. A kernel without this advice
// (before Linux 5.14) maps them one by one.
void reserve_pages(std::vector<rule>& rules, std::size_t count) {
  rules.reserve(rules.size() + count);
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  char* const unused = reinterpret_cast<char*>(rules.data() + rules.size());
  const std::size_t before_page = (page - reinterpret_cast<std::uintptr_t>(unused) % page) % page;
  const std::size_t size_bytes = count * sizeof(rule);
  if (size_bytes >= before_page + page) {
    madvise(unused + before_page, (size_bytes - before_page) / page * page, MADV_POPULATE_WRITE);
  }
}

// The number of rules that may still be read: names that are listed twice make a small file large.
class RuleBudget {
 public:
  explicit RuleBudget(std::size_t rules = SIZE_MAX) : rules_(rules) {}

  bool is_exceeded() const { return is_exceeded_; }

  // Returns false when fewer than `rules` are left, and for every call after that.
  bool take(std::size_t rules) {
    is_exceeded_ |= rules > rules_;
    rules_ -= is_exceeded_ ? 0 : rules;
    return !is_exceeded_;
  }

 private:
  std::size_t rules_;
  bool is_exceeded_ = false;
};

void append_rules(void** tree, const char* device_node, const char* filter_node,
                  std::vector<rule>& rules, RuleBudget& budget) {
  char list[kFilterListBytes] = {};
  read_text(tree, list, device_node, filter_node, "rule_node_list");
  const std::vector<char*> names = split_in_place(list);
  if (!budget.take(names.size())) {
    return;
  }
  reserve_pages(rules, names.size());
  for (const char* name : names) {
    read_rule(tree, device_node, filter_node, name, rules.emplace_back());
  }
}

int append_filters(void** tree, const char* device_node, std::vector<filter>& filters,
                   RuleBudget& budget) {
  char list[kFilterListBytes] = {};
  read_text(tree, list, device_node, "filter_node_list");
  const std::vector<char*> names = split_in_place(list);
  filters.reserve(filters.size() + names.size());
  for (const char* name : names) {
    filter& record = filters.emplace_back();
    read_text(tree, record.name, device_node, name, "name");
    record.enable = read_number(tree, 0, device_node, name, "enable");
    append_rules(tree, device_node, name, record.rule_list, budget);
    if (budget.is_exceeded()) {
      break;
    }
  }
  return static_cast<int>(names.size());
}

void append_device(void** tree, const char* device_node, std::vector<dev_filter>& devices,
                   RuleBudget& budget) {
  dev_filter& device = devices.emplace_back();
  const int count = append_filters(tree, device_node, device.filter_list, budget);
  if (count == 0) {
    devices.pop_back();
    return;
  }
  log_Debug("[libdevcfg] DevNode=[%s] Has %d filters", device_node, count);
  read_text(tree, device.device_id, device_node, "device_id");
}

// Returns false when the file lists too many rules.
bool append_devices(void** tree, std::vector<dev_filter>& devices) {
  char list[kFilterDeviceListBytes] = {};
  read_text(tree, list, "device_node_list");
  if (*list == '\0') {
    log_Debug("[libdevcfg] There is no rules in %s", kRuleFilePath);
    return true;
  }
  const std::vector<char*> names = split_in_place(list);
  devices.reserve(names.size());
  RuleBudget budget(kMaxFileRules);
  for (const char* name : names) {
    append_device(tree, name, devices, budget);
    if (budget.is_exceeded()) {
      log_Debug("[libdevcfg] %s lists more than %zu rules", kRuleFilePath, kMaxFileRules);
      std::vector<dev_filter>().swap(devices);
      return false;
    }
  }
  return true;
}

// Returns the subtree under the top element `top`, null when it does not exist; nothing, with a log
// line, when the file cannot be opened.
std::optional<void**> export_rule_file(const char* top) {
  const orvaneip::ConfigFile file(kCfgRead, kRuleFilePath);
  if (!file.is_open()) {
    log_Debug("[libdevcfg] open %s fail", kRuleFilePath);
    return std::nullopt;
  }
  return xmlcfg_export_xmltree(file.handle(), top, nullptr);
}

}  // namespace

int devcfg_get_filter_rules_list(std::vector<dev_filter>& devices) {
  devices.clear();
  const auto exported = export_rule_file(kTop);
  if (!exported) {
    return -1;
  }
  const ExportedTree tree(*exported);
  if (tree.get() == nullptr) {
    log_Debug("[libdevcfg] export tree of %s fail", kRuleFilePath);
    return -1;
  }
  return append_devices(tree.get(), devices) ? 0 : -1;
}

int devcfg_free_filter_rules_list(std::vector<dev_filter>& devices) {
  log_Debug("[libdevcfg] devcfg_free_filter_rules_list() free list");
  std::vector<dev_filter>().swap(devices);
  return 0;
}

int get_filter_rule(void** tree, char* device_node, std::vector<filter>& filters) {
  RuleBudget budget;
  return tree != nullptr && device_node != nullptr
             ? append_filters(tree, device_node, filters, budget)
             : 0;
}

int get_rule_list(void** tree, char* device_node, char* filter_node, std::vector<rule>& rules) {
  RuleBudget budget;
  if (tree != nullptr && device_node != nullptr && filter_node != nullptr) {
    append_rules(tree, device_node, filter_node, rules, budget);
  }
  return 0;
}

int devcfg_get_filter_rule(char* device_id, dev_filter& /*device*/) {
  char node[32];
  std::snprintf(node, sizeof(node), "device_%03d", devcfg_get_device_node(device_id));
  const auto exported = export_rule_file(node);
  if (!exported) {
    return -1;
  }
  const ExportedTree tree(*exported);
  return 0;
}
