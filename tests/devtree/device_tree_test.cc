#include <cstring>
#include <sstream>

#include "tests/support/config_files.h"
#include "tests/support/library.h"

using test::Tree;

// The events that the event service was asked to remove, each with a semicolon, and the one that it
// refuses.
static std::string requested, refused;

int aevt_remove_event(std::string event_id) {
  requested += event_id + ";";
  return event_id == refused ? 0 : 7;
}

TEST(FindDevice, Table) {
  const std::tuple<std::string, std::string, int> kRows[] = {
      {"device_000,device_002;device_002/device_id=X", "X", 2},
      {"device_002;device_002/device_id=x", "X", -1},
      {"device_001;device_002/device_id=X", "X", -1},
      {"NULL;NULL/device_id=X", "X", -1},
      {"", "X", -1},
      {"NULL,device_003;NULL/device_id=X;device_003/device_id=X", "X", 3},
      {",device_004,,device_004,;device_004/device_id=X", "X", 4},
      // The number of a name.
      {"camera,tills_012;camera/device_id=X;tills_012/device_id=X", "X", 12},
      {"a_7_9;a_7_9/device_id=X", "X", 7},
      {"a_,a_b,a_-1;a_/device_id=X;a_b/device_id=X;a_-1/device_id=X", "X", -1},
      {"a_99999999999;a_99999999999/device_id=X", "X", -1},
      {"device_1000;device_1000/device_id= \r\n<&>\"'", " \r\n<&>\"'", 1000},
      {"a_1;a_1/device_id=" + std::string(200, 'i'), std::string(kDeviceTextBytes - 1, 'i'), 1},
  };
  const test::ConfigFiles files;
  std::string other = "gateway";
  EXPECT_EQ(devcfg_get_device_node(other.data()), -1);
  EXPECT_EQ(test::take_product_log().back(), "[libdevcfg] open devcfg_get_device_node fail");
  for (auto [list, id, number] : kRows) {
    const std::string values = (list.empty() ? "other=" : "device_node_list=") + list;
    const Tree tree(kCfgRead, test::write_tree(files.device_tree(), "device", values));
    EXPECT_EQ(find_device_exist(tree.handle(), id.data()), number) << values;
    EXPECT_EQ(devcfg_get_device_node(id.data()), number);
    const Tree gateways(kCfgRead, test::write_tree(files.file("other"), other, values));
    EXPECT_EQ(find_device_exist_access(gateways.handle(), id.data(), other.data()), number);
  }
}

TEST(AddDeviceNode, AppendsWhatFits) {
  const std::string room_for_one(kNodeListBytes - 12, 'x'), no_room(kNodeListBytes - 11, 'x');
  const std::tuple<std::string, int, std::string> kRows[] = {
      {"", 5, "device_005"},
      {"NULL", 5, "device_005"},
      {"device_005", 12, "device_005,device_012"},
      {"NULL,a,", 127, "NULL,a,,device_127"},
      {room_for_one, 7, room_for_one + ",device_007"},
      {no_room, 7, no_room},
      {no_room + no_room, 7, no_room + no_room}};
  const test::TempDirectory directory;
  std::string top = "gateway";
  for (const auto& [list, number, after] : kRows) {
    const std::string values = "device_node_list=" + list;
    const Tree tree(kCfgChange, test::write_tree(directory.file("a"), top, values));
    EXPECT_TRUE(add_device_node(tree.handle(), number, top.data()));
    EXPECT_EQ(tree.value({top, "device_node_list"}), after);
    EXPECT_EQ(test::take_product_log().size(), list == after ? 1U : 0U);
  }
}

// Each text is at its offset in the record, whatever its bytes, cut to its size; the rest is zero.
TEST(GetDevice, EveryValueRoundTripsAndOnlyTrueEnables) {
  const char* const kFields =  // the offset, the size and the path of each
      "4 128 device_id 132 128 type 260 128 brand 388 128 device_name 516 128 plugin 644 128 "
      "install_path 773 128 description 901 128 src_property_list/conn/type "
      "1029 128 src_property_list/conn/lan/ip 1157 6 src_property_list/conn/lan/port "
      "1163 5 src_property_list/conn/com/com 1168 32 src_property_list/conn/com/baudrate "
      "1200 128 src_property_list/id 1328 128 src_property_list/pwd "
      "1456 128 src_property_list/binding/recording_cam";
  const test::TempDirectory directory;
  TDeviceInfo info;
  for (const std::string& text :
       {std::string(), {" "}, {"\r\n"}, {"<&>\"'"}, std::string(4000, 'x')}) {
    std::istringstream fields(kFields);
    std::string expected(sizeof(TDeviceInfo), '\0'), values = "other=", path;
    expected[0] = 7;
    for (std::size_t offset = 0, size = 0; fields >> offset >> size >> path;) {
      const std::string value = text + path.substr(path.rfind('/') + 1) + text;
      value.copy(&expected[offset], size - 1);
      values.append(";").append(path).append("=").append(value);
    }
    const Tree tree(kCfgRead, test::write_tree(directory.file("a"), "device/device_007", values));
    std::memset(&info, 0x5A, sizeof(info));
    ASSERT_TRUE(get_device(tree.handle(), 7, &info)) << text;
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(&info), sizeof(info)), expected);
  }
  for (const std::string text : {"true", "TRUE", "yes", "1", "true ", "trueish", "false", ""}) {
    const std::string values = "type=till;enable=" + text;
    const Tree tree(kCfgRead, test::write_tree(directory.file("a"), "device/device_003", values));
    EXPECT_FALSE(get_device(tree.handle(), 3, &info)) << "it has no identifier";
    EXPECT_EQ(info.enable, text == "true") << text;
  }
}

TEST(FindTerminalNode, Table) {
  const test::TempDirectory directory;
  const Tree tree(kCfgRead, test::write_tree(directory.file("terminals.xml"), "terminal",
                                             "t_1/device_id=X;t_2/device_id=X"));
  std::string many;
  for (int i = 1; i < kMaxDeviceNodes; ++i) {
    many += "a,";
  }
  const std::tuple<std::string, std::string, std::size_t> kRows[] = {
      {"a,t_1,t_2", "t_1", 0}, {",,t_2,,t_1,", "t_2", 0}, {"a,b", "------", 0},
      {",,", "------", 0},     {many + "t_1", "t_1", 0},  {many + "a,t_1", "------", 1},
  };
  for (auto [list, expected, messages] : kRows) {
    char node[8] = "------", id[] = "X";
    EXPECT_EQ(devcfg_find_device_node(tree.handle(), list.data(), id, node), 0);
    EXPECT_EQ(node, expected);
    EXPECT_EQ(test::take_product_log().size(), messages);
  }
}

TEST(RemoveEvents, Table) {
  const std::string failure = "[remove_event_in_table] aevt_remove_evet fail when remove evet_id:";
  const std::tuple<std::string, std::string, std::string, std::vector<std::string>> kRows[] = {
      {"other=", "", "", {"[remove_event_in_table] no terminal in device:device_001"}},
      {"terminal_node_list=t1,t2;t2/event_node_list=e1,e2;t2/e1/evt_id=id 1;t2/e2/evt_id=" +
           std::string(200, 'i'),
       "",
       "id 1;" + std::string(kEventIdBytes - 1, 'i') + ";",
       {"[remove_event_in_table] no active event in terminal:t1"}},
      // All are visited after a failure, also an event without an id and an item without a name.
      {"terminal_node_list=t1,t2,;t1/event_node_list=e1,e2;t1/e1/evt_id=1;t1/e2/evt_id=2;"
       "t2/event_node_list=e1,,e3,;t2/e3/evt_id=3",
       "NULL",
       "1;2;NULL;NULL;3;",
       {failure + "NULL", failure + "NULL"}},
  };
  const test::TempDirectory directory;
  char device[] = "device_001";
  for (const auto& [values, refused_id, expected, log] : kRows) {
    const Tree tree(kCfgRead, test::write_tree(directory.file("events.xml"),
                                               "device_event_root/device_001", values));
    requested.clear();
    refused = refused_id;
    EXPECT_EQ(remove_event_in_table(tree.handle(), device), refused.empty());
    EXPECT_EQ(requested, expected);
    EXPECT_EQ(test::take_product_log(), log);
  }
}
