#include <gtest/gtest.h>

#include <tuple>

#include "orvaneip.h"
#include "tests/support/captured_log.h"
#include "tests/support/config_files.h"

namespace {
std::string asked;
std::string refused;
}  // namespace

int aevt_remove_event(std::string event_id) {
  asked += event_id + ";";
  return event_id == refused ? 0 : 7;
}

TEST(RemoveEvents, Table) {
  using Lines = std::vector<std::string>;
  const std::string failure = "[remove_event_in_table] aevt_remove_evet fail when remove evet_id:";
  const std::tuple<std::string, std::string, std::string, Lines> kRows[] = {
      {"other=", "", "", {"[remove_event_in_table] no terminal in device:device_001"}},
      {"terminal_node_list=t1,t2;t2/event_node_list=e1,e2;t2/e1/evt_id=id 1;t2/e2/evt_id=" +
           std::string(200, 'i'),
       "",
       "id 1;" + std::string(127, 'i') + ";",
       {"[remove_event_in_table] no active event in terminal:t1"}},
      // All are asked for, whatever fails.
      {"terminal_node_list=t1,t2;t1/event_node_list=e1,e2;t1/e1/evt_id=1;t1/e2/evt_id=2;"
       "t2/event_node_list=e1;t2/e1/evt_id=3",
       "2",
       "1;2;3;",
       {failure + "2"}},
      // An event without an id, and an item without a name.
      {"terminal_node_list=t1,;t1/event_node_list=e1,,e3,;t1/e3/evt_id=3",
       "NULL",
       "NULL;NULL;3;",
       {failure + "NULL", failure + "NULL"}},
  };
  const test::TempFolder folder;
  const std::string file = folder.file("events.xml");
  for (const auto& [values, refused_id, asked_for, log] : kRows) {
    test::write_tree(file, "device_event_root/device_001", values);
    asked.clear();
    refused = refused_id;
    test::take_log();
    char device[] = "device_001";
    EXPECT_EQ(remove_event_in_table(test::Tree(file).handle, device), refused.empty());
    EXPECT_EQ(asked, asked_for);
    EXPECT_EQ(test::take_product_log(), log);
  }
}
