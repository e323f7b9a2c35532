#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <thread>

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
      {"PRAGMA user_version = 0x4F525603", kVaultNewerSchema},
      // What a vault does not have: an endless query in a trigger, a column that takes gigabytes.
      {"CREATE TRIGGER endless BEFORE INSERT ON channel BEGIN WITH RECURSIVE n(i) AS (SELECT 1"
       " UNION ALL SELECT i FROM n) SELECT count(*) FROM n; END; PRAGMA user_version",
       kVaultDamaged},
      {"ALTER TABLE filter ADD huge GENERATED ALWAYS AS (zeroblob(999999999)) VIRTUAL;"
       " PRAGMA user_version",
       kVaultDamaged},
      {"DROP TRIGGER data_source_limit; PRAGMA user_version", kVaultDamaged},
      {"CREATE VIEW v AS SELECT 1; PRAGMA user_version", kVaultDamaged},
  };
  for (const auto& [content, status] : kRows) {
    const test::TempVault directory;
    const bool is_sql = content.find("PRAGMA") != std::string::npos;
    EXPECT_EQ(is_sql && !content.starts_with(kForeign) ? test::add("a") : 0, 0);
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
  for (const char* path :
       {"new/directories/vault.db", "with space=1; 'x' %s", "quoted\"name", "db=x y ", "a=b\"c",
        ":memory:", "file:a?mode=memory", "link", "攝影機"}) {
    setenv("ORVANE_VAULT", path, 1);
    test::OpenVault open;
    EXPECT_EQ(open->insert_data_source(test::data_source("a", 0)), 0) << path;
    EXPECT_EQ(test::stored().size(), 1U);
    const std::string file = path == std::string("link") ? "target" : path;
    EXPECT_EQ(std::filesystem::status(file).permissions(), kPrivate) << path;
  }
  const std::tuple<std::string, int, const char*> kRows[] = {
      {directory.path(), kVaultUnreachable, "it is a directory"},
      {directory.file("absent/"), kVaultUnreachable, "not a directory"},
      {"sqlite://absent", kVaultUnreachable, "not absolute"},
      {"mysql://localhost/vault", kVaultUnsupported, "not a kind of vault database"},
      {"postgresql://localhost/vault", kVaultUnsupported, "PostgreSQL is not built in"},
      {"postgres://localhost/vault", kVaultUnsupported, "PostgreSQL is not built in"},
      {"/dev/null/vault.db", kVaultUnreachable, "Not a directory"}};
  for (const auto& [setting, status, words] : kRows) {
    setenv("ORVANE_VAULT", setting.c_str(), 1);
    test::take_log();
    EXPECT_EQ(test::add("a"), status);
    EXPECT_NE(test::take_log().at(1).find(words), std::string::npos) << words;
  }
  EXPECT_FALSE(std::filesystem::exists("absent"));
  setenv("ORVANE_VAULT", ("sqlite://" + directory.file("uri")).c_str(), 1);
  EXPECT_EQ(test::add("a"), 0);
  EXPECT_TRUE(std::filesystem::exists("uri"));
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

TEST(VaultFile, IsCreatedByAChangeOnlyWithItsModeWhateverTheUmask) {
  for (const mode_t mask : {mode_t{0}, mode_t{0177}, mode_t{0777}}) {
    const test::TempVault directory;
    const std::string parent = directory.file("new");
    setenv("ORVANE_VAULT", (parent + "/vault.db").c_str(), 1);
    const mode_t before = umask(mask);
    EXPECT_EQ(test::show(), R"({"vault_list":[]})");
    EXPECT_TRUE(test::stored().empty());
    EXPECT_EQ(aevt_remove_event("e"), 0);
    EXPECT_EQ(devcfg_set_last_recv_time("a", 1), kVaultNotFound);
    EXPECT_EQ(test::OpenVault()->remove_channel_by_guid("g"), 0);
    EXPECT_EQ(test::OpenVault()->update_data_source(test::data_source("a", 0)), kVaultNotFound);
    EXPECT_FALSE(std::filesystem::exists(parent));
    EXPECT_EQ(test::add("a"), 0);
    umask(before);
    EXPECT_EQ(std::filesystem::status(parent).permissions(), std::filesystem::perms{0755});
    for (const auto& entry : std::filesystem::directory_iterator(parent)) {
      EXPECT_EQ(entry.status().permissions(), kPrivate) << entry.path();
    }
  }
}

TEST(VaultFile, CreatedByRootHasTheOwnerOfItsDirectory) {
  if (geteuid() != 0) {
    GTEST_SKIP() << "only root can give files away";
  }
  const test::TempVault directory;
  ASSERT_EQ(chown(directory.path().c_str(), 12345, 54321), 0);
  setenv("ORVANE_VAULT", directory.file("new/vault.db").c_str(), 1);
  EXPECT_EQ(test::add("a"), 0);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(directory.path())) {
    struct stat status {};
    EXPECT_EQ(stat(entry.path().c_str(), &status), 0);
    EXPECT_EQ(std::pair(status.st_uid, status.st_gid), std::pair(uid_t{12345}, gid_t{54321}))
        << entry.path();
  }
}

// As version 1 of the schema created it.
TEST(VaultFile, OfTheFirstVersionIsReadAndUpgradedByTheFirstChange) {
  const test::TempVault directory;
  const test::BareSqlite file(directory.database());
  ASSERT_EQ(
      file.exec(
          "PRAGMA journal_mode = WAL; PRAGMA application_id = 0x4F52564E;"
          "PRAGMA user_version = 0x4F525601;"
          "CREATE TABLE data_source (record_id INTEGER PRIMARY KEY AUTOINCREMENT, vault_id TEXT NOT"
          " NULL UNIQUE, type TEXT NOT NULL, vault_name TEXT NOT NULL, enable INTEGER NOT NULL,"
          " list_index INTEGER NOT NULL, description TEXT NOT NULL, last_recv_time BIGINT NOT "
          "NULL);"
          "CREATE UNIQUE INDEX data_source_by_index ON data_source (list_index)"
          " WHERE list_index >= 0;"
          "CREATE TRIGGER data_source_limit BEFORE INSERT ON data_source WHEN (SELECT count(*) FROM"
          " data_source) >= 128 BEGIN SELECT RAISE(ABORT, 'the vault list is full'); END;"
          "CREATE TABLE channel (record_id INTEGER PRIMARY KEY AUTOINCREMENT, vault_id TEXT NOT"
          " NULL, channel_index INTEGER NOT NULL, guid TEXT NOT NULL, name TEXT NOT NULL);"
          "CREATE INDEX channel_by_vault ON channel (vault_id, channel_index, record_id);"
          "CREATE INDEX channel_by_guid ON channel (guid);"
          "CREATE TABLE filter (record_id INTEGER PRIMARY KEY AUTOINCREMENT, vault_id TEXT NOT"
          " NULL, type INTEGER NOT NULL, target TEXT NOT NULL, result TEXT NOT NULL, name TEXT NOT"
          " NULL);"
          "CREATE INDEX filter_by_vault ON filter (vault_id, record_id);"
          "CREATE TABLE metadata (record_id INTEGER PRIMARY KEY AUTOINCREMENT, metadata_id TEXT NOT"
          " NULL UNIQUE, vault_id TEXT NOT NULL, content TEXT NOT NULL);"
          "INSERT INTO data_source VALUES (1, 'a', 't', 'n', 1, 0, 'd', 5);"
          "INSERT INTO channel VALUES (1, 'a', 0, 'g', 'n');"
          "INSERT INTO filter VALUES (1, 'a', 1, 't', 'r', 'n'); ANALYZE; VACUUM"),
      0);
  const std::string before = test::show();
  EXPECT_EQ(test::stored().size(), 1U);
  EXPECT_EQ(file.query("PRAGMA user_version")->at(0, 0), std::to_string(0x4F525601));
  EXPECT_EQ(aevt_add_event("e"), 0);
  EXPECT_EQ(file.query("PRAGMA user_version")->at(0, 0), std::to_string(0x4F525602));
  EXPECT_EQ(test::show(), before);
  EXPECT_NE(aevt_remove_event("e"), 0);
}

TEST(VaultFile, KeepsTheTimeOfTheLastReceivedMetadataAndNeverSetsItBack) {
  const test::TempVault directory;
  EXPECT_EQ(test::add("a"), 0);
  const std::tuple<const char*, std::int64_t, int, std::int64_t> kRows[] = {
      {"a", 1000, 0, 1000},
      {"a", 999, 0, 1000},
      {"a", 2000, 0, 2000},
      {"b", 1, kVaultNotFound, 2000}};
  for (const auto& [vault_id, time_ms, status, stored] : kRows) {
    EXPECT_EQ(devcfg_set_last_recv_time(vault_id, time_ms), status);
    EXPECT_EQ(test::stored("a").at(0).last_recv_time, stored);
  }
}
