#include "tests/support/exported_calls.h"

#include <cstring>

#include "tests/support/run_sql.h"

namespace test {
namespace {

char id_a[] = "a", node_d[] = "d", node_f[] = "f", text_x[] = "x", table_t[] = "t", table_u[] = "u";
char top[] = "device", terminal[] = "terminal", missing[] = "missing";

int add_and_remove(Own& own) {
  int code = 0;
  std::string id = own.id + "+";
  char name[kVaultNameBytes] = "";
  char description[kDescriptionBytes];
  devcfg_add_device(id.data(), id_a, nullptr, id_a, id_a, nullptr, nullptr, own.channels, 0, false,
                    true, &code);
  devcfg_remove_device(id.data(), name, description);
  return code == 0 && *name == 'a' ? 1 : 0;
}

void remove_added(Own& own) { devcfg_remove_device((own.id + "+").data(), nullptr, nullptr); }

int modify(Own& own) {
  std::vector<int> indexes;
  const int result =
      devcfg_modify_device(own.id.data(), nullptr, own.name, own.name, nullptr, nullptr,
                           own.channels, nullptr, own.name, nullptr, nullptr, indexes);
  return result == 0 && indexes.size() == 1 ? 1 : 0;
}

// Returns how many data sources the document lists.
int listed(json_object* made) {
  const std::shared_ptr<json_object> document(made, json_object_put);
  json_object* list = json_object_object_get(made, "vault_list");
  return list == nullptr ? 0 : static_cast<int>(json_object_array_length(list));
}

int count_matches(int (*call)(char*, int*), char* text) {
  int found = 0;
  call(text, &found);
  return found;
}

int check_token(Own&) {
  bool has_token = true;
  devcfg_clear_filter_token(id_a);
  devcfg_check_filter_token(id_a, &has_token);
  return has_token ? 0 : 1;
}

int filter_text(Own& own) {
  std::string text = "old";
  ft_filter_string(own.id.data(), text.data());
  return text == "new" ? 1 : 0;
}

int filter_text_bounded(Own& own) {
  FilterReport report;
  std::string text = "old";
  ft_filter_string_bounded(own.id.data(), text.data(), text.size() + 1, report);
  return text == "new" ? 1 : 0;
}

int read_stored_rules(Own& own) {
  std::vector<rule> rules;
  get_rule_list(own.id.data(), rules);
  return static_cast<int>(rules.size());
}

int apply_rules(Own&) {
  const std::vector<rule> rules = {{"", 0, 1, "x", "xxy"}};
  FilterReport report;
  char texts[2][4096] = {"xx", "xx"};
  char* text = texts[0];
  do_filtering(rules, text);
  do_filtering_bounded(rules, texts[1], sizeof(texts[1]), report);
  return std::strcmp(text, texts[1]) == 0 ? static_cast<int>(std::strlen(text)) : 0;
}

int escape(Own&) {
  std::vector<std::string> patterns;
  std::string expression;
  check_abnormal_char_for_special_for_SQL("a+'b' \"c d\" and one that is longer", patterns);
  check_abnormal_char_for_special_for_mongo("a+b \"c d\" and one that is longer", expression);
  return static_cast<int>(patterns.size() * 100 + expression.size());
}

int query(Own& own) {
  CSqlite db(own.database.c_str());
  char text[32] = "";
  char* copy = nullptr;
  int number = 0;
  long key = 0;
  const bool done = db.openDatabase(nullptr) && db.ExecSQL("DELETE FROM t") &&
                    db.ExecSQL("INSERT INTO t (a) VALUES ('one and the same text')", table_t) > 0 &&
                    db.Parametrized_ExecSQL("UPDATE t SET b = ?", "b", nullptr) &&
                    db.QuerySQL("SELECT *, 7 AS n FROM t WHERE b = 'b'") &&
                    db.QTotalRecords() == 1 && db.QGetStringByName("a", text) &&
                    db.QGetStringByName1("a", &copy) && std::strcmp(text, copy) == 0 &&
                    db.QGetIntegerByName("n", &number) && db.QGetLongByName("id", &key) &&
                    db.getColumnIndex("n") == 3;
  std::free(copy);
  db.QNext();
  const bool ended = db.QEof();
  db.QReset();
  db.freeResult();
  const bool counted = done && db.GetLastSequence(table_t) == key;
  return db.closeDatabase() && counted && ended ? number : 0;
}

int compare_columns(Own& own) {
  int count = 0;
  const Columns fresh(
      devcfg_compare_table_schema(own.missing_columns.get(), own.columns.get(), &count));
  std::vector<std::string> statements;
  devcfg_upgrade_statements(own.missing_columns.get(), table_u, statements);
  return count == 1 && statements.size() == 2 && statements[1] == "ALTER TABLE u ADD b TEXT" ? 1
                                                                                             : 0;
}

int upgrade(Own& own) {
  CSqlite db(own.database.c_str());
  const bool is_old = db.openDatabase(nullptr) &&
                      db.ExecSQL("DROP TABLE IF EXISTS u; CREATE TABLE u (id INTEGER)") &&
                      db.closeDatabase();
  return is_old &&
         devcfg_update_table(own.missing_columns.get(), table_u, own.database.data()) == 0;
}

void restore_upgraded(Own& own) {
  run_sql(own.database, "DROP TABLE IF EXISTS u; CREATE TABLE u (id INTEGER, a TEXT, b TEXT)");
}

int pack(Own&) {
  char payload[] = "payload";
  unsigned char frame[sizeof(payload) + kFrameOverheadBytes];
  unsigned char received[sizeof(payload)];
  devcfg_generate_send_packet(frame, payload, sizeof(payload));
  devcfg_analysis_recv_packet(frame, received);
  return devcfg_find_frame(frame, sizeof(frame), sizeof(payload), true).is_whole &&
         getCheckSum(received, sizeof(received), 0) == frame[sizeof(frame) - 2] &&
         devcfg_unpack_frame(frame, sizeof(frame), received, sizeof(received), nullptr) == 0;
}

int run_commands(Own&) {
  return devcfg_restart_all() == 1 && devcfg_dev_reload_all() == 1 && devcfg_dev_load(id_a) == 1 &&
         devcfg_dev_unload(id_a) == 1;
}

int receive_events(Own& own) {
  return evtcfg_recv_notify_mortals(id_a, 0, nullptr, own.name, nullptr) +
         evtcfg_recv_notify_access(id_a, id_a, nullptr, id_a, id_a, id_a, id_a, id_a, nullptr,
                                   id_a) +
         evtcfg_remove_event(id_a, nullptr, own.name);
}

int use_helpers(Own& own) {
  char id[kDeviceIdBytes];
  std::vector<std::string> items;
  table_info none;
  devcfg_init_tb_info(&none, 0);
  std::free(none.col_name);
  std::free(none.col_type);
  const int network = get_nas_net_info(nullptr, nullptr, nullptr, nullptr);
  LogDebug("%s", own.id.c_str());
  return devcfg_get_net_info(id) == 0 && create_device_id() != id &&
         split("a,b", ',') == split("a,b", ',', items) && create_terminal_id().size() == 35 &&
         get_timezone_diff() % 60 == 0 && check_file_exist(own.database.data()) &&
         devcfg_dev_load(nullptr) == -1 && (network == 0 || network == kDevcfgAddressListEmpty) &&
         *devcfg_result_text(0) == 's';
}

int read_rules(Own&) {
  std::vector<dev_filter> devices;
  char output[8];
  const int result = devcfg_get_filter_rules_list(devices);
  const int matched = devcfg_match_filters(text_x, output, 8, id_a, devices) +
                      devcfg_do_filtering(text_x, 1, output, 8, id_a, devices);
  devcfg_free_filter_rules_list(devices);
  return result < 0 ? result : matched;
}

int read_rule_tree(Own& own) {
  std::vector<filter> filters(1);  // to be appended to
  std::vector<rule> rules(1);
  get_rule_list(own.rules.get(), node_d, node_f, rules);
  const int count = get_filter_rule(own.rules.get(), node_d, filters);
  return filters.size() == 2 && filters[1].rule_list.size() == 1 && rules.size() == 2 ? count : 0;
}

int find_node(Own& own) {
  char list[] = "n";
  char found[2] = "";
  devcfg_find_device_node(own.terminals.handle(), list, id_a, found);
  return found[0] == 'n' ? 1 : 0;
}

}  // namespace

// A row of one expression.
#define CALL(name, expression, ...)                                                              \
  {                                                                                              \
    name, []([[maybe_unused]] Own& own) -> int { return expression; } __VA_OPT__(, ) __VA_ARGS__ \
  }

const std::vector<Call> kExportedCalls = {
    {"add_and_remove", add_and_remove, 1, {}, remove_added},
    {"devcfg_modify_device", modify},
    CALL("devcfg_get_all_device",
         listed(devcfg_get_all_device(nullptr, nullptr, nullptr, nullptr)) > 0),
    CALL("devcfg_get_device", listed(devcfg_get_device(own.id.data(), nullptr))),
    CALL("devcfg_check_vault_exist", count_matches(devcfg_check_vault_exist, own.id.data())),
    CALL("devcfg_check_vault_name", count_matches(devcfg_check_vault_name, missing) + 1),
    {"ft_filter_string", filter_text},
    {"ft_filter_string_bounded", filter_text_bounded},
    {"get_rule_list", read_stored_rules},
    CALL("devcfg_modify_filter", devcfg_modify_filter(own.id.data(), own.filters) == 0),
    CALL("notify_camera_removed", notify_camera_removed(missing) == 0),
    CALL("notify_camera_modified", notify_camera_modified(missing, id_a, 0) == 0),
    CALL("devcfg_set_last_recv_time", devcfg_set_last_recv_time(own.id.c_str(), 1) == 0),
    CALL("metadata_remove", metadata_remove(missing, nullptr, nullptr, nullptr) == 0),
    {"check_token", check_token},
    {"apply_rules", apply_rules, 2002},
    {"escape", escape, 731},
    {"query", query, 7},
    CALL("devcfg_load_table_schema", load(own.database, "t") != nullptr),
    {"compare_columns", compare_columns},
    CALL("devcfg_update_table",
         devcfg_update_table(own.columns.get(), table_t, own.database.data()) == -1),
    {"upgrade", upgrade, 1, {}, restore_upgraded},
    {"pack", pack},
    {"run_commands", run_commands},
    CALL("receive_events", receive_events(own) + 1),
    {"use_helpers", use_helpers},
    {"devcfg_find_device_node", find_node, 1, {{"xmlcfg_get_str", 0}}},
    CALL("devcfg_preview_builtin", devcfg_preview_builtin(*std::make_unique<BuiltinChanges>()) + 1,
         1, {{"xmlcfg_open", 0}}),
    CALL("get_device", get_device(own.device.handle(), 1, std::make_unique<TDeviceInfo>().get()), 1,
         {{"xmlcfg_get_str/device/device_001/device_id", 0}}),
    CALL("devcfg_get_filter_rule",
         devcfg_get_filter_rule(id_a, *std::make_unique<dev_filter>()) + 1, 1,
         {{"xmlcfg_open/kfilter.xml", 0}}),
    CALL("devcfg_check_builtin", devcfg_check_builtin() + 1, 1,
         {{"xmlcfg_open", 0}, {"xmlcfg_set", 0}, {"xmlcfg_close", 0}}),
    CALL("devcfg_get_device_node", devcfg_get_device_node(id_a), 1,
         {{"xmlcfg_open", -1}, {"xmlcfg_get_str", -1}}),
    CALL("find_device_exist", find_device_exist(own.device.handle(), id_a), 1,
         {{"xmlcfg_get_str", -1}}),
    CALL("find_device_exist_access", find_device_exist_access(own.device.handle(), id_a, top), 1,
         {{"xmlcfg_get_str", -1}}),
    CALL("add_device_node", add_device_node(own.terminals.handle(), 7, terminal)),
    CALL("remove_event_in_table", remove_event_in_table(own.events.handle(), node_d), 1,
         {{"aevt_remove_event", 0}}),
    CALL("read_rules", read_rules(own), 4,
         {{"xmlcfg_open", -1},
          {"xmlcfg_export", -1},
          {"xmltree", 0},
          {"xmltree_get_str/filter/d/f/name", 4},
          {"xmltree_get_str/filter/d/f/r/name", 4},
          {"xmltree_get_str/filter/d/f/r/result", 4}}),
    CALL("read_rule_tree", read_rule_tree(own), 1,
         {{"xmltree_get_str/filter/d/f/rule_node_list", 0},
          {"xmltree_get_str/filter/d/filter_node_list", 0}}),
};

}  // namespace test
