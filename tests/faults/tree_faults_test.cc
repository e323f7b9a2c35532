// Every call that an exported function makes to the configuration tree or the event service fails
// once. This program's definitions of them, which keep a tree in memory, come before the
// platform's.
#include <gtest/gtest.h>

#include <cstdarg>
#include <cstring>
#include <functional>
#include <map>

#include "orvaneip.h"

namespace {

using Values = std::map<std::string, std::string>;  // of a tree, by paths joined with "/"

struct Below {
  int failing = 0;          // the number of the call that fails; 0: none
  int calls = 0;            // how many there were
  std::string failed = {};  // the one that failed, with its arguments
  int open = 0;             // handles and copies that are not released yet
  int saved = 0;            // trees that were saved changed
};
Below below;

bool fails(const std::string& call) {
  if (++below.calls == below.failing) {
    below.failed = call;
  }
  return below.calls == below.failing;
}

const Values kTree = {
    {"device/device_node_list", "device_000"},
    {"device/device_000/device_id", "a"},
    {"device/device_000/builtin", "true"},
    {"device/device_000/qid", "gone"},
    {"device/no", "1"},
    {"device/builtin_0/qid", "fresh"},
    {"device_event_root/d/terminal_node_list", "t"},
    {"device_event_root/d/t/event_node_list", "e,f"},
    {"filter/device_node_list", "d"},
    {"filter/d/filter_node_list", "f"},
    {"filter/d/f/rule_node_list", "r"},
    {"filter/d/f/r/target", "x"},
    {"terminal/n/device_id", "a"},
};

struct Handle {
  Handle() { ++below.open; }
  ~Handle() { --below.open; }
  Values values = kTree;
};

// `call` and the path in `names`, whose null pointer ends it.
std::string path_of(const std::string& call, va_list names) {
  std::string path = call;
  while (const char* name = va_arg(names, const char*)) {
    path.append("/").append(name);
  }
  return path;
}

bool read(void* handle, const char* otherwise, char* buffer, int size_bytes, va_list names) {
  const std::string path = path_of("", names);
  const Values& values = static_cast<Handle*>(handle)->values;
  const auto found = values.find(path.substr(1));
  const bool is_there = !fails("get " + path) && found != values.end();
  std::snprintf(buffer, static_cast<std::size_t>(size_bytes), "%s",
                is_there ? found->second.c_str() : otherwise);
  return is_there;
}

// Null removes what is at the path and below it.
bool store(void* handle, const std::string& path, const char* value) {
  Values& values = static_cast<Handle*>(handle)->values;
  if (fails((value != nullptr ? "set " : "remove ") + path)) {
    return false;
  }
  if (value != nullptr) {
    values[path.substr(1)] = value;
  } else {
    std::erase_if(values, [&](const auto& item) { return item.first.starts_with(path.substr(1)); });
  }
  return true;
}

}  // namespace

void orvane_log_debug(const char*, ...) {}
void log_Debug(const char*, ...) {}

int aevt_remove_event(std::string) { return fails("event") ? 0 : 1; }

void* xmlcfg_open(TCfgMode, const char* path) {
  return fails(std::string("open").append(std::strrchr(path, '/'))) ? nullptr : new Handle;
}
bool xmlcfg_close(void* handle, bool save) {
  const std::unique_ptr<Handle> closed(static_cast<Handle*>(handle));
  below.saved += save && closed->values != kTree ? 1 : 0;
  return !fails("close");
}
#pragma GCC diagnostic ignored "-Wvarargs"  // va_start behind a bool, as the interface has it
#define WITH_PATH(last, result) \
  va_list names;                \
  va_start(names, last);        \
  const auto answer = result;   \
  va_end(names);                \
  return answer;
bool xmlcfg_get_str(void* tree, const char* otherwise, char* buffer, int size_bytes, ...) {
  WITH_PATH(size_bytes, read(tree, otherwise, buffer, size_bytes, names))
}
bool xmltree_get_str(void** tree, const char* otherwise, char* buffer, int size_bytes, ...) {
  WITH_PATH(size_bytes, read(tree, otherwise, buffer, size_bytes, names))
}
bool xmlcfg_get_bool(void* tree, bool otherwise, ...) {
  char text[8];
  WITH_PATH(otherwise, read(tree, "", text, 8, names) ? text == std::string("true") : otherwise)
}
int xmlcfg_get_int(void* tree, int otherwise, ...) {
  char text[8];
  WITH_PATH(otherwise, read(tree, "", text, 8, names) ? std::atoi(text) : otherwise)
}
int xmltree_get_int(void** tree, int otherwise, ...) {
  char text[8];
  WITH_PATH(otherwise, read(tree, "", text, 8, names) ? std::atoi(text) : otherwise)
}
bool xmlcfg_set_str(void* tree, const char* value, ...) {
  WITH_PATH(value, store(tree, path_of("", names), value))
}
bool xmlcfg_remove(void* tree, ...) { WITH_PATH(tree, store(tree, path_of("", names), nullptr)) }
void** xmlcfg_export_xmltree(void*, ...) {
  void* copy = fails("export") ? nullptr : new Handle;
  return static_cast<void**>(copy);
}
void xmltree_destroy(void** tree) { delete static_cast<Handle*>(static_cast<void*>(tree)); }

namespace {

char id_a[] = "a";
char node_d[] = "d";
char node_f[] = "f";
char top[] = "device";

void** copied(void* tree) { return static_cast<void**>(tree); }

int check_builtin(void*) {
  const int result = devcfg_check_builtin();
  const int saved = below.failed.starts_with("close") ? 1 : 0;
  return result == 0 || below.saved == saved ? result : -9;  // half of the changes were saved
}

int get_node(void* tree) {
  TDeviceInfo info;
  return get_device(tree, 0, &info) ? 1 : 0;
}

int find_node(void* tree) {
  char list[] = "n";
  char found[2] = "";
  return devcfg_find_device_node(tree, list, id_a, found) + (found[0] == 'n' ? 1 : 0);
}

int get_devices(void*) {
  std::vector<dev_filter> devices;
  return devcfg_get_filter_rules_list(devices) + static_cast<int>(devices.size());
}

std::vector<filter> filters;
std::vector<rule> rules;
dev_filter device;
BuiltinChanges changes;

// A function on an open tree, its result, and the calls whose failure gives another one.
const struct Call {
  int (*call)(void* tree);
  int result;
  std::map<std::string, int> failing;
} kCalls[] = {
    {check_builtin, 0, {{"open", -1}, {"set ", -1}, {"remove ", -1}, {"close", -1}}},
    {[](void*) { return devcfg_preview_builtin(changes); }, 0, {{"open", -1}}},
    {[](void*) { return devcfg_get_device_node(id_a); }, 0, {{"open", -1}, {"get ", -1}}},
    {[](void* tree) { return find_device_exist(tree, id_a); }, 0, {{"get ", -1}}},
    {[](void* tree) { return find_device_exist_access(tree, id_a, top); }, 0, {{"get ", -1}}},
    {[](void* tree) { return add_device_node(tree, 7, top) ? 1 : 0; }, 1, {}},
    {get_node, 1, {{"get /device/device_000/device_id", 0}}},
    {find_node, 1, {{"get ", 0}}},
    {[](void* tree) { return remove_event_in_table(tree, node_d) ? 1 : 0; }, 1, {{"event", 0}}},
    {get_devices,
     1,
     {{"open", -1},
      {"export", -1},
      {"get /filter/device_node_list", 0},
      {"get /filter/d/filter_node_list", 0}}},
    {[](void* tree) { return get_filter_rule(copied(tree), node_d, filters); },
     1,
     {{"get /filter/d/filter_node_list", 0}}},
    {[](void* tree) { return get_rule_list(copied(tree), node_d, node_f, rules); }, 0, {}},
    {[](void*) { return devcfg_get_filter_rule(id_a, device); }, 0, {{"open/kfilter.xml", -1}}},
};

}  // namespace

TEST(TreeFaults, GiveTheStatedResultWithEverythingReleasedWhicheverCallFails) {
  for (const Call& call : kCalls) {
    below = {};
    do {
      Handle tree;
      below = {below.failing + 1, 0, "", 1};
      const int result = call.call(&tree);
      const auto other =
          std::find_if(call.failing.begin(), call.failing.end(),
                       [](const auto& row) { return below.failed.starts_with(row.first); });
      EXPECT_EQ(result, other != call.failing.end() ? other->second : call.result)
          << &call - kCalls << ": " << below.failed;
      EXPECT_EQ(below.open, 1) << &call - kCalls << ": " << below.failed;
    } while (!below.failed.empty());
    EXPECT_GT(below.failing, 1) << &call - kCalls;
  }
}
