// Null where a pointer is expected: each call has its stated result, and changes nothing.
#include "tests/support/columns.h"
#include "tests/support/exported_calls.h"

void orvane_log_debug(const char*, ...) {}
void log_Debug(const char*, ...) {}

namespace {

char a[] = "a", empty[] = "", t[] = "t", d[] = "d", f[] = "f", text[16] = "text";
unsigned char frame[16] = {};
int number = 7;
long large = 7;
char* made = nullptr;

struct Row {
  const char* call;
  bool (*returns_as_stated)(test::Own& own, CSqlite& db);
};
#define ROW(expression)                                                           \
  {                                                                               \
#expression, []([[maybe_unused]] test::Own & own,                             \
                    [[maybe_unused]] CSqlite & db) -> bool { return expression; } \
  }

const Row kRows[] = {
    ROW(find_device_exist(nullptr, a) == -1 &&
        find_device_exist(own.device.handle(), nullptr) == -1),
    ROW(find_device_exist_access(own.device.handle(), a, nullptr) == -1),
    ROW(devcfg_get_device_node(nullptr) == -1),
    ROW(add_device_node(nullptr, 1, a) && add_device_node(own.device.handle(), 1, nullptr)),
    ROW(!get_device(own.device.handle(), 1, nullptr)),
    ROW(devcfg_find_device_node(nullptr, t, a, text) == 0),
    ROW(devcfg_find_device_node(own.terminals.handle(), nullptr, a, text) == 0),
    ROW(devcfg_find_device_node(own.terminals.handle(), t, nullptr, text) == 0),
    ROW(devcfg_find_device_node(own.terminals.handle(), t, a, nullptr) == 0),
    ROW(!remove_event_in_table(nullptr, d) && !remove_event_in_table(own.events.handle(), nullptr)),
    ROW(devcfg_match_filters(nullptr, text, 9, a, {{}}) == 0),
    ROW(devcfg_match_filters(a, nullptr, 9, a, {{}}) == 0),
    ROW(devcfg_match_filters(a, text, 9, nullptr, {{}}) == 0),
    ROW(get_filter_rule(nullptr, d, *std::make_unique<std::vector<filter>>()) == 0),
    ROW(get_filter_rule(own.rules.get(), nullptr, *std::make_unique<std::vector<filter>>()) == 0),
    ROW(get_rule_list(nullptr, d, f, *std::make_unique<std::vector<rule>>()) == 0),
    ROW(get_rule_list(own.rules.get(), nullptr, f, *std::make_unique<std::vector<rule>>()) == 0),
    ROW(get_rule_list(own.rules.get(), d, nullptr, *std::make_unique<std::vector<rule>>()) == 0),
    ROW(devcfg_check_vault_exist(nullptr, &number) == kDevcfgFailed),
    ROW(devcfg_check_vault_exist(a, nullptr) == kDevcfgFailed),
    ROW(devcfg_check_vault_name(nullptr, &number) == kDevcfgFailed),
    ROW(devcfg_check_vault_name(a, nullptr) == kDevcfgFailed),
    ROW(devcfg_modify_filter(own.id.data(), nullptr) == -1),
    ROW(devcfg_modify_filter(nullptr, own.channels) == kDevcfgVaultIdMissing),
    ROW(devcfg_modify_filter(empty, own.channels) == kDevcfgVaultIdMissing),
    ROW(devcfg_add_device(nullptr, a, a, a, a, nullptr, nullptr, nullptr, 0, true, true, nullptr) ==
        nullptr),
    ROW(!check_file_exist(nullptr)),
    ROW(!db.ExecSQL(nullptr) && db.ExecSQL(nullptr, t) == -1 &&
        db.ExecSQL("SELECT 1", nullptr) == -1),
    ROW(!db.Parametrized_ExecSQL(nullptr, nullptr) && !db.QuerySQL(nullptr)),
    ROW(db.GetLastSequence(nullptr) == -1 && db.QuerySQL("SELECT 7 AS n")),
    ROW(db.getColumnIndex(nullptr) == -1 && !db.QGetIntegerByName(nullptr, &number)),
    ROW(!db.QGetIntegerByName("n", nullptr) && !db.QGetLongByName("n", nullptr)),
    ROW(!db.QGetStringByName("n", nullptr) && !db.QGetStringByName1("n", nullptr)),
    ROW(!db.QGetLongByName(nullptr, &large) && !db.QGetStringByName1(nullptr, &made)),
    ROW(devcfg_load_table_schema(nullptr, t) == nullptr),
    ROW(devcfg_load_table_schema(own.database.data(), nullptr) == nullptr),
    ROW(devcfg_update_table(nullptr, t, nullptr) == -1),
    ROW(devcfg_update_table(test::load(own.database, t).get(), nullptr, own.database.data()) == -1),
    ROW((devcfg_generate_send_packet(nullptr, text, 4),
         devcfg_analysis_recv_packet(nullptr, nullptr), true)),
    ROW((devcfg_generate_send_packet(frame, nullptr, 4), *frame == 0)),
    ROW((devcfg_generate_send_packet(frame, nullptr, 0), *frame == kFrameStart)),
    ROW((devcfg_analysis_recv_packet(frame, nullptr), *frame == kFrameStart)),
    ROW(!xmlcfg_remove(nullptr, "d", nullptr) &&
        xmlcfg_export_xmltree(nullptr, "d", nullptr) == nullptr),
};

}  // namespace

TEST(NullArguments, GiveTheStatedResultAndChangeNothing) {
  const test::TempVault vault;
  const test::ConfigFiles files;
  test::write_fixed_files(files);
  test::Own own(files, "own");
  const std::string before = test::show();
  CSqlite db(own.database.c_str());
  for (const Row& row : kRows) {
    EXPECT_TRUE(db.db != nullptr || db.openDatabase(nullptr));
    EXPECT_TRUE(row.returns_as_stated(own, db)) << row.call;
  }
  EXPECT_EQ(test::show(), before);
  EXPECT_TRUE(number == 7 && large == 7 && own.device.close() && own.terminals.close());
}
