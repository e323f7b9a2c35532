#include <filesystem>

#include "tests/support/library.h"
#include "tests/support/run_sql.h"

using namespace std::literals;
using test::run_sql;

static const std::string kTable =
    "CREATE TABLE IF NOT EXISTS active_event (event_id TEXT PRIMARY KEY);"
    "INSERT INTO active_event VALUES ('e1')";

std::vector<std::string> active_events() {
  std::vector<std::string> ids;
  EXPECT_EQ(aevt_list_events(ids), 0);
  return ids;
}

TEST(EventService, TakesTheEventFileOverAndRemovesTheEventWithExactlyThisId) {
  const test::TempVault vault;
  const std::string file = vault.file("events.db");
  EXPECT_EQ(aevt_remove_event("e1"), 0);
  run_sql(file, kTable +
                    ", ('e'), ('E1'), ('e1 '), (''), ('a''b\";--'), ('%'),"
                    "(CAST(x'65310078' AS TEXT)), (NULL)");
  EXPECT_EQ(aevt_add_event("e2"), 0);
  EXPECT_EQ(aevt_add_event("e2"), 0);
  EXPECT_EQ(run_sql(file, "SELECT count(*) FROM active_event"), "0");
  std::size_t left = 9;
  for (const std::string& id :
       {"e1"s, "e"s, "E1"s, "e1 "s, ""s, "a'b\";--"s, "%"s, "e1\0x"s, "e2"s}) {
    EXPECT_EQ(active_events().size(), left--);
    EXPECT_NE(aevt_remove_event(id), 0) << id;
    EXPECT_EQ(aevt_remove_event(id), 0) << id;
  }
  run_sql(file, "INSERT INTO active_event VALUES ('z'), ('a')");
  EXPECT_EQ(active_events(), (std::vector<std::string>{"a", "z"}));
  EXPECT_TRUE(test::take_log().empty());
}

TEST(EventService, HasAnotherFileBesideAVaultOfItsNameAndLeavesForeignFilesAlone) {
  const test::TempVault vault;
  setenv("ORVANE_VAULT", vault.file("events.db").c_str(), 1);
  run_sql(vault.file("active_events.db"), kTable);
  EXPECT_NE(aevt_remove_event("e1"), 0);
  setenv("ORVANE_VAULT", vault.file("vault.db").c_str(), 1);
  const std::string garbage(5'000, 'x');
  for (const std::string& statements :
       {""s, kTable + "; PRAGMA user_version = 1"s, kTable + "; PRAGMA application_id = 1"s,
        kTable + "; CREATE TABLE other (a)"s, "CREATE TABLE active_event (event_id)"s}) {
    const std::string file = vault.file("events.db");
    std::filesystem::remove(file);
    statements.empty() ? test::write_file(file, garbage) : void(run_sql(file, statements));
    const std::string before = test::read_file(file);
    test::take_log();
    EXPECT_EQ(aevt_remove_event("e1"), 0);
    EXPECT_EQ(test::take_product_log().size(), 1U) << statements;
    EXPECT_TRUE(test::read_file(file) == before) << statements;
  }
}
