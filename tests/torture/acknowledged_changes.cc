// Makes a change of each kind, and acknowledges each on standard output once it has returned.
#include <unistd.h>

#include <cstdlib>

#include "tests/platform/run_sql.h"
#include "tests/support/config_tree.h"
#include "tests/support/temp_folder.h"
#include "tests/support/vault_calls.h"

namespace {

void acknowledge(bool done) {
  if (!done || write(STDOUT_FILENO, "done\n", 5) != 5) {
    std::abort();
  }
}

void change_through_an_open_connection() {
  test::OpenVault vault;
  auto source = test::data_source("a", 0);
  acknowledge(vault->insert_data_source(source) == 0);
  acknowledge(vault->update_data_source(source) == 0);
  acknowledge(vault->remove_data_source(source) == 0);
}

void change_data_sources() {
  char id[] = "till";
  char guid[] = "g0";
  std::vector<int> indexes;
  const std::string list = R"([{"guid":"g0","channel_index":0,"name":"n","target":"t"}])";
  acknowledge(test::add(id, "Till", list) == 0);
  acknowledge(test::modify(id, {"\"Till 2\"", "", "true", list}, indexes) == 0);
  acknowledge(devcfg_modify_filter(id, test::Json(list)) == 0);
  acknowledge(notify_camera_modified(guid, id, 0) == 0);
  acknowledge(notify_camera_removed(guid) == 0);
  acknowledge(devcfg_remove_device(id, nullptr, nullptr) == 0);
}

void change_tree(const std::string& file) {
  acknowledge(initial_xml());
  for (const char* value : {"first", "second"}) {
    test::Tree tree(kCfgChange, file);
    char top[] = "device";
    acknowledge(tree.store({top, "device_007", "device_id"}, value) &&
                add_device_node(tree.handle(), 7, top) && tree.close());
  }
  test::Tree tree(kCfgChange, file);
  acknowledge(tree.remove({"device", "device_007"}) && tree.close());
}

void remove_event(const std::string& database) {
  acknowledge(aevt_remove_event("e") == 0);
  test::run_sql(database, "INSERT INTO active_event VALUES ('e')");
  acknowledge(aevt_remove_event("e") != 0);
}

}  // namespace

int main() {
  change_through_an_open_connection();
  change_data_sources();
  change_tree(ORVANEIP_ROOT "/third_party/zelip/config/zelip.xml");
  remove_event(ORVANEIP_ROOT "/vault/events.db");
}
