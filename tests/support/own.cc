// What the calls work on, and what takes the place of the service's programs and events.
#include <dlfcn.h>

#include "tests/support/exported_calls.h"

namespace test {
namespace {

constexpr char kDeviceTree[] =
    "device_node_list=device_001,device_000;device_000/builtin=true;device_000/qid=gone;"
    "device_001/device_id=a";
constexpr char kEvents[] =
    "d/terminal_node_list=t;d/t/event_node_list=e,f;d/t/e/evt_id=1;d/t/f/evt_id=2";

}  // namespace

Own::Own(const ConfigFiles& files, const std::string& own_name)
    : id(own_name),
      database(files.file(id + ".db")),
      name('"' + id + '"'),
      channels(R"([{"guid":"g","channel_index":4,"name":"n"}])"),
      device(kCfgChange, write_tree(files.file(id), "device", kDeviceTree)),
      terminals(kCfgChange, write_tree(files.file(id + "t"), "terminal", "n/device_id=a")),
      events(kCfgChange, write_tree(files.file(id + "e"), "device_event_root", kEvents)) {
  EXPECT_EQ(add(id, "name"), 0);
  EXPECT_EQ(devcfg_modify_filter(id.data(), filters), 0);
  CSqlite db(database.c_str());
  EXPECT_TRUE(db.openDatabase(nullptr) &&
              db.ExecSQL("CREATE TABLE t (id INTEGER PRIMARY KEY AUTOINCREMENT, a TEXT, b TEXT);"
                         "CREATE TABLE u (id INTEGER)"));
  columns = load(database, "t");
  const Columns old = load(database, "u");
  missing_columns.reset(devcfg_compare_table_schema(old.get(), columns.get(), nullptr));
  const Tree rule_file(kCfgRead, files.rule_file());
  rules.reset(xmlcfg_export_xmltree(rule_file.handle(), "filter", nullptr), xmltree_destroy);
}

void write_fixed_files(const ConfigFiles& files) {
  write_tree(files.device_tree(), "device", kDeviceTree);
  std::string entries = "no=6";  // so large that a tree takes memory for their values
  for (int i = 0; i < 6; ++i) {
    const std::string entry = ";builtin_" + std::to_string(i) + "/";
    entries += entry + "qid=" + std::to_string(i) + entry + "builtin=yes";
    for (const char* key : {"type=", "brand=", "plugin=", "device_name=", "install_path="}) {
      entries += entry + key + std::string(1000, 'v');
    }
  }
  write_tree(files.builtin_list(), "device", entries);
  write_tree(files.rule_file(), "filter",
             "device_node_list=d;d/device_id=a;d/filter_node_list=f;d/f/enable=1;"
             "d/f/rule_node_list=r;d/f/r/enable=1;d/f/r/type=1;d/f/r/target=x");
}

}  // namespace test

// Instead of the service's programs, of which each would exit with 1.
int vorn_exec(int zero_1, int zero_2, int zero_3, const char*, ...) {
  static const auto embedded =
      reinterpret_cast<decltype(&vorn_exec)>(dlsym(RTLD_NEXT, "vorn_exec"));
  return embedded(zero_1, zero_2, zero_3, "/bin/false", nullptr);
}

// Instead of the event service.
int aevt_remove_event(std::string) {
  return test::call_fails != nullptr && test::call_fails("aevt_remove_event") ? 0 : 1;
}
