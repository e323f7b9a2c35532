#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "platform/event_service.h"
#include "tests/support/bare_sqlite.h"
#include "tests/support/vault_calls.h"

using namespace metadata_vault;

constexpr std::filesystem::perms kPrivate{0600};

TEST(VaultFile, IsRefusedAndNotChangedWhenItIsNotAVaultOfThisVersion) {
  const std::string kForeign = "CREATE TABLE channel (guid); PRAGMA user_version = ";
  // The bytes of the file, or statements that create a database or change a vault.
  const std::pair<std::string, int> kRows[] = {
      {"hello", kVaultDamaged},
      {std::string(4096, '\0'), kVaultDamaged},
      {kForeign + "0", kVaultDamaged},
      {kForeign + "1", kVaultDamaged},
      {"PRAGMA user_version = -1", kVaultDamaged},
      {"PRAGMA user_version = 0x4F525602", kVaultNewerSchema},
  };
  for (const auto& [content, status] : kRows) {
    const test::TempVault directory;
    EXPECT_EQ(content.starts_with("PRAGMA") ? test::add("a") : 0, 0);
    const bool is_sql = content.find("PRAGMA") != std::string::npos;
    is_sql ? void() : test::write_file(directory.database(), content);
    EXPECT_EQ(is_sql ? test::BareSqlite(directory.database()).exec(content) : 0, 0);
    const std::string before = test::read_file(directory.database());
    test::take_log();
    EXPECT_EQ(test::add("b"), status) << content;
    const std::string line = "[vaultdb] init failed with status " + std::to_string(status) + ": ";
    EXPECT_TRUE(test::take_log().at(1).starts_with(line + directory.database()));
    EXPECT_EQ(test::show(), R"({"vault_list":[]})");
    EXPECT_TRUE(test::read_file(directory.database()) == before) << content;
  }
  const test::TempVault directory;
  EXPECT_EQ(test::add("a"), 0);
  const std::string first_page = test::read_file(directory.database()).substr(0, 4096);
  test::write_file(directory.database(), first_page + std::string(20'000, 'x'));
  std::vector<DataSource> found;
  EXPECT_EQ(test::OpenVault()->query_data_source("", "", found), kVaultDamaged);
}

TEST(VaultFile, LockedByAnotherWriterEndsTheWait) {
  const test::TempVault directory;
  EXPECT_EQ(test::add("a"), 0);
  const test::BareSqlite holder(directory.database()), events(directory.file("events.db"));
  ASSERT_EQ(holder.exec("BEGIN IMMEDIATE") + events.exec("BEGIN EXCLUSIVE; CREATE TABLE t(a)"), 0);
  std::thread remover([] { EXPECT_EQ(aevt_remove_event("e"), 0); });
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(test::add("b"), kVaultBusy);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  remover.join();
  EXPECT_EQ(test::stored().size(), 1U);
}

TEST(VaultFile, IsPrivateAndAtThePathOfTheSettingOrTheFailureIsLogged) {
  const test::TempVault directory;
  ASSERT_EQ(chdir(directory.path().c_str()), 0);
  std::filesystem::create_symlink("target", directory.file("link"));
  for (const char* path : {"new/directories/vault.db", "with space=1; 'x' %s", "quoted\"name",
                           "db=x y ", ":memory:", "file:a?mode=memory", "link", "攝影機"}) {
    setenv("ORVANE_VAULT", path, 1);
    test::OpenVault open;
    EXPECT_EQ(open->insert_data_source(test::data_source("a", 0)), 0) << path;
    EXPECT_EQ(test::stored().size(), 1U);
    const std::string file = path == std::string("link") ? "target" : path;
    EXPECT_EQ(std::filesystem::status(file).permissions(), kPrivate) << path;
  }
  const std::tuple<std::string, int, const char*> kRows[] = {
      {directory.file("both=and\"quote"), kVaultUnreachable, "quotation mark"},
      {"postgresql://localhost/vault", kVaultUnsupported, "PostgreSQL is not built in"},
      {"postgres://localhost/vault", kVaultUnsupported, "PostgreSQL is not built in"},
      {"/dev/null/vault.db", kVaultUnreachable, "Not a directory"}};
  for (const auto& [setting, status, words] : kRows) {
    setenv("ORVANE_VAULT", setting.c_str(), 1);
    test::take_log();
    EXPECT_EQ(test::add("a"), status);
    EXPECT_NE(test::take_log().at(1).find(words), std::string::npos) << words;
  }
#ifdef ORVANEIP_ROOT
  const std::string file = ORVANEIP_ROOT "/var/lib/orvane/vault.db";
  std::filesystem::remove_all(ORVANEIP_ROOT "/var/lib/orvane");
  setenv("ORVANE_VAULT", "", 1);
  EXPECT_EQ(test::add("a"), 0);
  unsetenv("ORVANE_VAULT");
  EXPECT_EQ(test::add("b"), 0);
  EXPECT_EQ(std::filesystem::status(file).permissions(), kPrivate);
#endif
}
