#include <gtest/gtest.h>

#include "orvaneip.h"
#include "tests/support/captured_log.h"
#include "tests/support/config_files.h"

namespace {
std::vector<std::string> asked;
std::string refused;
}  // namespace

int aevt_remove_event(std::string event_id) {
  asked.push_back(event_id);
  return event_id == refused ? 0 : 7;
}

TEST(RemoveEvents, Table) {
  using Lines = std::vector<std::string>;
  const std::string failure = "[remove_event_in_table] aevt_remove_evet fail when remove evet_id:";
  const Lines no_terminal = {"[remove_event_in_table] no terminal in device:device_001"};
  struct Row {
    std::string values;
    std::string refused;
    Lines asked;
    Lines log;
  };
  const Row kRows[] = {
      {"other=", "", {}, no_terminal},
      {"terminal_node_list=NULL", "", {}, no_terminal},
      {"terminal_node_list=t1,t2;t2/event_node_list=e1,e2;t2/e1/evt_id=id 1;t2/e2/evt_id=" +
           std::string(200, 'i'),
       "",
       {"id 1", std::string(127, 'i')},
       {"[remove_event_in_table] no active event in terminal:t1"}},
      // All are asked for, whatever fails.
      {"terminal_node_list=t1,t2;t1/event_node_list=e1,e2;t1/e1/evt_id=1;t1/e2/evt_id=2;"
       "t2/event_node_list=e1;t2/e1/evt_id=3",
       "2",
       {"1", "2", "3"},
       {failure + "2"}},
      // An event without an id, and an item without a name.
      {"terminal_node_list=t1,;t1/event_node_list=e1,,e3,;t1/e3/evt_id=3",
       "NULL",
       {"NULL", "NULL", "3"},
       {failure + "NULL", failure + "NULL"}},
  };
  const test::TempFolder folder;
  const std::string file = folder.file("events.xml");
  for (const Row& row : kRows) {
    test::write_tree(file, "device_event_root/device_001", row.values);
    const std::string before = test::read_file(file);
    asked.clear();
    refused = row.refused;
    test::take_log();
    char device[] = "device_001";
    EXPECT_EQ(remove_event_in_table(test::Tree(file, kCfgChange).handle, device),
              row.refused.empty());
    EXPECT_EQ(asked, row.asked);
    EXPECT_EQ(test::take_product_log(), row.log);
    EXPECT_EQ(test::read_file(file), before);
  }
}
