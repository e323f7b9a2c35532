#include "devtree/internal/builtin_plan.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/strings.h"
#include "platform/log_sinks.h"

namespace orvaneip {
namespace {

struct Entry {
  std::string key;
  std::string mark;  // as a node gets it
  bool marks_builtin;
  bool present = false;
};

std::vector<Entry> read_entries(const BuiltinList& builtin_list) {
  const int count = builtin_list.entry_count();
  if (count > kMaxDeviceNodes) {
    orvane_log_debug("[libdevcfg] %d built-in entries, those beyond %d are ignored", count,
                     kMaxDeviceNodes);
  }
  std::vector<Entry> entries;
  const int used = std::clamp(count, 0, kMaxDeviceNodes);
  entries.reserve(static_cast<std::size_t>(used));
  for (int number = 0; number < used; ++number) {
    entries.push_back({builtin_list.key(number), builtin_list.value(number, "builtin"),
                       builtin_list.marks_builtin(number)});
  }
  return entries;
}

// An item kNoValue is not the name of a node.
std::ptrdiff_t count_nodes(const std::vector<std::string>& names) {
  return std::ssize(names) - std::count(names.begin(), names.end(), kNoValue);
}

std::vector<std::string> read_names(const DeviceTree& device_tree) {
  std::string list = device_tree.node_list();
  const std::vector<char*> items = split_in_place(list.data());
  std::vector<std::string> names(items.begin(), items.end());
  if (const auto count = count_nodes(names); count > kMaxDeviceNodes) {
    orvane_log_debug("[libdevcfg] %td node names, those beyond %d are ignored", count,
                     kMaxDeviceNodes);
  }
  return names;
}

bool contains(const std::vector<std::string>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

// Ties a node to the first entry with its key that is not tied yet. Returns false when no entry has
// the key.
bool tie_builtin_node(std::vector<Entry>& entries, const std::string& key) {
  bool known = false;
  for (Entry& entry : entries) {
    if (entry.key == key) {
      known = true;
      if (!std::exchange(entry.present, true)) {
        break;
      }
    }
  }
  return known;
}

// Ties a node that was made from an entry whose mark does not read as true: it has the same mark.
void tie_marked_node(const DeviceTree& device_tree, const std::string& name,
                     std::vector<Entry>& entries) {
  const std::string key = device_tree.key(name);
  const auto made_from = std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) {
    return !entry.present && !entry.marks_builtin && entry.key == key &&
           device_tree.holds(entry.mark, name.c_str(), "builtin");
  });
  if (made_from != entries.end()) {
    made_from->present = true;
  }
}

// Returns true when the node stays.
bool tie_node(const DeviceTree& device_tree, const std::string& name, std::vector<Entry>& entries) {
  if (device_tree.is_builtin(name)) {
    return tie_builtin_node(entries, device_tree.key(name));
  }
  tie_marked_node(device_tree, name, entries);
  return true;
}

// Removes the nodes without an entry from `names`, and returns them.
std::vector<std::string> drop_nodes(const DeviceTree& device_tree, std::vector<Entry>& entries,
                                    std::vector<std::string>& names) {
  std::vector<std::string> dropped;
  int nodes = 0;
  for (const std::string& name : names) {
    if (name == kNoValue) {
      continue;
    }
    if (nodes++ == kMaxDeviceNodes) {
      break;
    }
    if (!contains(dropped, name) && !tie_node(device_tree, name, entries)) {
      orvane_log_debug("[libdevcfg] device_%03d need to remove", node_number(name).value_or(-1));
      dropped.push_back(name);
    }
  }
  std::erase_if(names, [&](const std::string& name) { return contains(dropped, name); });
  return dropped;
}

// Returns the first name that is not in use; there is one as long as `names` is not full.
std::string free_name(const std::vector<std::string>& names) {
  int number = 0;
  for (; contains(names, node_name(number).text); ++number) {
    orvane_log_debug("[libdevcfg] used device node = %s", node_name(number).text);
  }
  return node_name(number).text;
}

// Appends a name to `names` for each entry without a node, until they are full.
void add_nodes(const std::vector<Entry>& entries, std::vector<std::string>& names,
               BuiltinChanges& changes) {
  for (int number = 0; number < std::ssize(entries); ++number) {
    if (entries[static_cast<std::size_t>(number)].present) {
      continue;
    }
    orvane_log_debug("[libdevcfg] builtin_%d need to add", number);
    if (count_nodes(names) >= kMaxDeviceNodes) {
      orvane_log_debug("[libdevcfg] reach max device number");
      changes.limit_reached = true;
      return;
    }
    if (names == std::vector<std::string>{kNoValue}) {
      names.clear();
    }
    names.push_back(free_name(names));
    changes.added.push_back({names.back(), number});
  }
}

}  // namespace

BuiltinPlan plan_builtin(const BuiltinList& builtin_list, const DeviceTree& device_tree) {
  std::vector<Entry> entries = read_entries(builtin_list);
  std::vector<std::string> names = read_names(device_tree);
  BuiltinPlan plan;
  plan.changes.removed = drop_nodes(device_tree, entries, names);
  add_nodes(entries, names, plan.changes);
  plan.node_list = base::join(names, ",");
  return plan;
}

}  // namespace orvaneip
