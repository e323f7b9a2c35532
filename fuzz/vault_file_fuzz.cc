// The vault database as bytes of a file, under every call that reads and changes it. A file that is
// refused stays as it is.
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
  fuzz::require(code == 0, "there is a listing, be it of nothing");
  devcfg_remove_device(id, name, description);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const test::TempVault folder;
  for (const char* suffix : {"-wal", "-shm", "-journal"}) {
    std::remove((folder.database() + suffix).c_str());
  }
  const std::string bytes(data, data + size);
  test::write_file(folder.database(), bytes);
  const bool is_opened = CDataSource().init() == 0;
  json_object* list = json_tokener_parse(R"([{"guid":"g","channel_index":1,"name":"n"}])");
  read_and_change("a", list);
  read_and_change("new", list);
  json_object_put(list);
  fuzz::require(is_opened || test::read_file(folder.database()) == bytes, "it is left alone");
  return 0;
}
