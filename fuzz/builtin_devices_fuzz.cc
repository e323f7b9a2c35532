// The built-in list and the device tree as bytes of files: the user's nodes are never changed, and
// a second run changes nothing.
// Input: the built-in list, then the device tree.
#include <map>

#include "fuzz/fuzz.h"
#include "tests/support/config_files.h"

// Returns the values of the listed nodes that are not built-in.
static std::map<std::string, std::string> read_users_nodes(const std::string& file) {
  std::map<std::string, std::string> nodes;
  const test::Tree tree(kCfgRead, file);
  const std::string list = tree.value({"device", "device_node_list"});
  for (const std::string& name : split(list, ',')) {
    if (list != "NULL" && list != "(none)" && !name.empty() &&
        !xmlcfg_get_bool(tree.handle(), false, "device", name.c_str(), "builtin", nullptr)) {
      for (const char* key : {"device_id", "qid", "builtin", "type", "brand", "device_name",
                              "plugin", "install_path", "db_name", "enable", "description"}) {
        nodes[name] += tree.value({"device", name, key}) + '\f';
      }
    }
  }
  return nodes;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const test::ConfigFiles files;
  const auto texts = fuzz::texts_of(data, size, 2);
  test::write_file(files.builtin_list(), texts[0]);
  test::write_file(files.device_tree(), texts[1]);
  const auto before = read_users_nodes(files.device_tree());
  const int result = devcfg_check_builtin();
  fuzz::require(test::read_file(files.builtin_list()) == texts[0],
                "the built-in list is only read");
  auto after = read_users_nodes(files.device_tree());
  for (const auto& [name, values] : before) {
    fuzz::require(after[name] == values, "the user's nodes stay as they are");
  }
  const std::string tree = test::read_file(files.device_tree());
  fuzz::require(devcfg_check_builtin() == result, "a second run has the same result");
  fuzz::require(test::read_file(files.device_tree()) == tree, "and changes nothing");
  return 0;
}
