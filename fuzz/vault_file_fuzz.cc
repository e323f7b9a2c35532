// Runs every call that reads or changes the vault database on an untrusted file. A file that is
// refused is not changed.
// Input: the file.
#include <json-c/json.h>

#include "fuzz/fuzz.h"
#include "tests/support/temp_directory.h"

static void read_and_change(std::string vault_id, json_object* list) {
  char* id = vault_id.data();
  int code = 0;
  devcfg_add_device(id, id, nullptr, id, id, nullptr, nullptr, list, 0, false, true, &code);
  char name[kVaultNameBytes];
  char description[kDescriptionBytes];
  std::vector<int> indexes;
  devcfg_modify_device(id, nullptr, list, nullptr, nullptr, nullptr, list, nullptr, list, name,
                       description, indexes);
  std::vector<rule> rules;
  get_rule_list(id, rules);
  devcfg_modify_filter(id, list);
  notify_camera_modified(id, id, 0);
  json_object_put(devcfg_get_all_device(&code, nullptr, nullptr, nullptr));
  fuzz::require(code == 0, "there is a listing, even if it is empty");
  devcfg_remove_device(id, name, description);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const test::TempVault directory;
  for (const char* suffix : {"-wal", "-shm", "-journal"}) {
    std::remove((directory.database() + suffix).c_str());
  }
  const std::string bytes(data, data + size);
  test::write_file(directory.database(), bytes);
  const bool is_opened = CDataSource().init() == 0;
  json_object* list = json_tokener_parse(R"([{"guid":"g","channel_index":1,"name":"n"}])");
  read_and_change("a", list);
  read_and_change("new", list);
  json_object_put(list);
  fuzz::require(is_opened || test::read_file(directory.database()) == bytes,
                "a refused file is not changed");
  return 0;
}
