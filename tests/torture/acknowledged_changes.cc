// Makes a change of each kind, and acknowledges each on standard output once it has returned.
#include <unistd.h>

#include "tests/support/config_tree.h"
#include "tests/support/run_sql.h"
#include "tests/support/vault_calls.h"

int main() {
  const auto acknowledge = [](bool done) {
    if (!done || write(STDOUT_FILENO, "done\n", 5) != 5) {
      _exit(1);
    }
  };
  char id[] = "till";
  std::vector<int> indexes;
  const std::string list = R"([{"guid":"g","channel_index":0,"name":"n","target":"t"}])";
  // Before the connection is closed.
  acknowledge(test::OpenVault()->insert_data_source(test::data_source("a", 0)) == 0);
  acknowledge(test::add(id, "Till", list) == 0);
  acknowledge(test::modify(id, {"\"Till 2\"", "", "true", list}, indexes) == 0);
  acknowledge(devcfg_modify_filter(id, test::Json(list)) == 0);
  acknowledge(devcfg_remove_device(id, nullptr, nullptr) == 0);
  acknowledge(initial_xml());
  test::Tree tree(kCfgChange, ORVANEIP_ROOT "/third_party/zelip/config/zelip.xml");
  acknowledge(tree.store({"device", "device_007"}, "x") && tree.close());
  acknowledge(aevt_remove_event(id) == 0);
  acknowledge(aevt_add_event(id) == 0);
  acknowledge(devcfg_set_last_recv_time("a", 1) == 0);
  test::run_sql(ORVANEIP_ROOT "/vault/events.db",
                "CREATE TABLE active_event (event_id TEXT PRIMARY KEY);"
                "INSERT INTO active_event VALUES ('till')");
  acknowledge(aevt_remove_event(id) != 0);
}
