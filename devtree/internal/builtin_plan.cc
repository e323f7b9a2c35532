#include "devtree/internal/builtin_plan.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <string_view>
#include <utility>

#include "devtree/device_tree.h"
#include "devtree/internal/node_list.h"
#include "platform/config_tree.h"
#include "platform/log_sinks.h"

namespace orvaneip {
namespace {

constexpr char kTop[] = "device";
constexpr char kNodeList[] = "device_node_list";

std::string entry_name(int entry) { return "builtin_" + std::to_string(entry); }

struct Entry {
  std::string key;
  std::string mark;  // as a node gets it
  bool marks_builtin;
  bool present = false;
};

Entry read_entry(void* builtin_list, int number) {
  const std::string name = entry_name(number);
  char key[kValueBytes];
  read_value(builtin_list, kNone, key, kTop, name.c_str(), "qid");
  return {key, entry_value(builtin_list, number, "builtin"),
          xmlcfg_get_bool(builtin_list, false, kTop, name.c_str(), "builtin", nullptr)};
}

std::vector<Entry> read_entries(void* builtin_list) {
  const int count = xmlcfg_get_int(builtin_list, 0, kTop, "no", nullptr);
  if (count > kMaxDeviceNodes) {
    orvane_log_debug("[libdevcfg] %d built-in entries, those beyond %d are ignored", count,
                     kMaxDeviceNodes);
  }
  const int read = std::clamp(count, 0, kMaxDeviceNodes);
  std::vector<Entry> entries;
  entries.reserve(static_cast<std::size_t>(read));
  for (int number = 0; number < read; ++number) {
    entries.push_back(read_entry(builtin_list, number));
  }
  return entries;
}

// The whole list, however long it is: a name that is cut off here would be lost from the file.
std::string read_node_list(void* device_tree) {
  std::string list(kNodeListBytes, '\0');
  for (;;) {
    xmlcfg_get_str(device_tree, kNone, list.data(), static_cast<int>(list.size()), kTop, kNodeList,
                   nullptr);
    const std::size_t length = std::strlen(list.c_str());
    if (length + 1 < list.size() || list.size() > INT_MAX / 2) {
      list.resize(length);
      return list;
    }
    list.assign(2 * list.size(), '\0');
  }
}

// An item "NULL" names no node.
std::ptrdiff_t count_nodes(const std::vector<std::string>& names) {
  return std::ssize(names) - std::count(names.begin(), names.end(), kNone);
}

std::vector<std::string> read_names(void* device_tree) {
  std::string list = read_node_list(device_tree);
  const std::vector<char*> items = cut_names(list.data());
  std::vector<std::string> names(items.begin(), items.end());
  if (const auto count = count_nodes(names); count > kMaxDeviceNodes) {
    orvane_log_debug("[libdevcfg] %td node names, those beyond %d are ignored", count,
                     kMaxDeviceNodes);
  }
  return names;
}

std::string join(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) {
    list.append(list.empty() ? "" : ",").append(name);
  }
  return list;
}

bool contains(const std::vector<std::string>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

// Ties a node to the first entry with its key that no node has yet. False when no entry has the
// key.
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

// A node made from an entry whose mark does not read as true bears the same mark.
void tie_marked_node(void* device_tree, const std::string& name, std::vector<Entry>& entries,
                     const std::string& key) {
  const auto made_from = std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) {
    return !entry.present && !entry.marks_builtin && entry.key == key &&
           holds_value(device_tree, entry.mark, kTop, name.c_str(), "builtin");
  });
  if (made_from != entries.end()) {
    made_from->present = true;
  }
}

// True when the node stays.
bool tie_node(void* device_tree, const std::string& name, std::vector<Entry>& entries) {
  char key[kValueBytes];
  read_value(device_tree, kNone, key, kTop, name.c_str(), "qid");
  if (xmlcfg_get_bool(device_tree, false, kTop, name.c_str(), "builtin", nullptr)) {
    return tie_builtin_node(entries, key);
  }
  tie_marked_node(device_tree, name, entries, key);
  return true;
}

// Takes the nodes whose entry has gone out of `names`.
std::vector<std::string> drop_nodes(void* device_tree, std::vector<Entry>& entries,
                                    std::vector<std::string>& names) {
  std::vector<std::string> dropped;
  int looked_at = 0;
  for (const std::string& name : names) {
    if (name == kNone) {
      continue;
    }
    if (looked_at++ == kMaxDeviceNodes) {
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

// The first name that is not in use. There is one: fewer names than numbers are.
std::string free_name(const std::vector<std::string>& names) {
  int number = 0;
  for (; contains(names, node_name(number).text); ++number) {
    orvane_log_debug("[libdevcfg] used device node = %s", node_name(number).text);
  }
  return node_name(number).text;
}

// Adds a name to `names` for each entry without a node, until they are full.
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
    if (join(names) == kNone) {
      names.clear();
    }
    names.push_back(free_name(names));
    changes.added.push_back({names.back(), number});
  }
}

// How many bytes at the end of the text begin a character of UTF-8 that the end cuts off.
std::size_t cut_bytes(std::string_view text) {
  for (std::size_t tail = 1; tail <= std::min<std::size_t>(text.size(), 3); ++tail) {
    const auto byte = static_cast<unsigned char>(text[text.size() - tail]);
    if (byte < 0x80 || byte >= 0xC0) {
      const std::size_t length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
      return length > tail ? tail : 0;
    }
  }
  return 0;
}

}  // namespace

std::string entry_value(void* builtin_list, int entry, const char* key) {
  char buffer[1024];
  read_value(builtin_list, kNone, buffer, kTop, entry_name(entry).c_str(), key);
  std::string value = buffer;
  if (value.size() == sizeof(buffer) - 1) {
    value.resize(value.size() - cut_bytes(value));
  }
  return value;
}

BuiltinPlan plan_builtin(void* builtin_list, void* device_tree) {
  std::vector<Entry> entries = read_entries(builtin_list);
  std::vector<std::string> names = read_names(device_tree);
  BuiltinPlan plan;
  plan.changes.removed = drop_nodes(device_tree, entries, names);
  add_nodes(entries, names, plan.changes);
  plan.node_list = join(names);
  return plan;
}

}  // namespace orvaneip
