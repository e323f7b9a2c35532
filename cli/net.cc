// devcfg net: how this machine can be reached.
#include <string>

#include "cli/command_error.h"
#include "cli/commands.h"
#include "cli/output.h"

namespace devcfg {
namespace {

struct NetInfo {
  char ip[kNasAddressBytes] = "";
  int share_value_1 = 0;
  int app_value = 0;
  int share_value_2 = 0;
};

NetInfo ask() {
  NetInfo info;
  const int result =
      get_nas_net_info(info.ip, &info.share_value_1, &info.app_value, &info.share_value_2);
  if (result != kDevcfgOk) {
    throw CommandError("no network information", result);
  }
  return info;
}

void print_document(const NetInfo& info) {
  const Json document(json_object_new_object());
  json_object_object_add(document.get(), "ip", json_object_new_string(info.ip));
  json_object_object_add(document.get(), "share_value_1", json_object_new_int(info.share_value_1));
  json_object_object_add(document.get(), "app_value", json_object_new_int(info.app_value));
  json_object_object_add(document.get(), "share_value_2", json_object_new_int(info.share_value_2));
  print_json(document.get());
}

void print_table(const NetInfo& info) {
  Table table({"ADDRESS", "SHARE VALUE 1", "APP VALUE", "SHARE VALUE 2"});
  table.add_row({info.ip, std::to_string(info.share_value_1), std::to_string(info.app_value),
                 std::to_string(info.share_value_2)});
  table.print();
}

void show(const bool& json) { (json ? print_document : print_table)(ask()); }

}  // namespace

void add_net_commands(Command root) {
  const Command net =
      root.subcommand("net", "Show the address and numbers under which this machine is reached");
  bool& json = net.run(show);
  net.flag("--json", json, "Print a JSON document");
}

}  // namespace devcfg
