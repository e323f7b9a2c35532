// The disk under SQLite fails: this program's file system, the default one of the process, is the
// usual one with an operation of a chosen number that fails.
#include <sqlite3.h>

#include <algorithm>
#include <filesystem>
#include <map>

#include "tests/platform/run_sql.h"
#include "tests/support/exported_calls.h"

namespace {

using namespace metadata_vault;

struct Disk {
  long left = -1;      // operations until one fails; below 0: none does
  bool lasts = false;  // all after it fail too
  bool full = false;   // writing alone fails, for want of space
  long failures = 0;
};
Disk disk;

bool fails(bool writes) {
  if (disk.left < 0 || (disk.full && !writes) || disk.left-- > 0) {
    return false;
  }
  disk.left = disk.lasts ? 0 : -1;
  ++disk.failures;
  return true;
}

struct Methods : sqlite3_io_methods {
  const sqlite3_io_methods* usual;
};

// The method at `kMethod` of the usual file system, or SQLITE_IOERR and `kFailure`.
template <auto kMethod, int kFailure>
struct Failing;
template <typename... Values, int (*sqlite3_io_methods::*kMethod)(sqlite3_file*, Values...),
          int kFailure>
struct Failing<kMethod, kFailure> {
  static int call(sqlite3_file* file, Values... values) {
    constexpr bool kWrites = kFailure == SQLITE_IOERR_WRITE;
    if (fails(kWrites)) {
      return disk.full ? SQLITE_FULL : kFailure;
    }
    return (static_cast<const Methods*>(file->pMethods)->usual->*kMethod)(file, values...);
  }
};
#define FAILING(method, failure) \
  methods.method = Failing<&sqlite3_io_methods::method, failure>::call

const Methods* failing_methods(const sqlite3_io_methods* usual) {
  static std::map<const sqlite3_io_methods*, Methods> made;
  Methods& methods = made[usual];
  static_cast<sqlite3_io_methods&>(methods) = *usual;
  methods.usual = usual;
  FAILING(xRead, SQLITE_IOERR_READ);
  FAILING(xWrite, SQLITE_IOERR_WRITE);
  FAILING(xTruncate, SQLITE_IOERR_TRUNCATE);
  FAILING(xSync, SQLITE_IOERR_FSYNC);
  FAILING(xFileSize, SQLITE_IOERR_FSTAT);
  FAILING(xLock, SQLITE_IOERR_LOCK);
  FAILING(xShmMap, SQLITE_IOERR_SHMMAP);
  return &methods;
}

sqlite3_vfs* const usual_files = sqlite3_vfs_find(nullptr);

int open_file(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* out_flags) {
  file->pMethods = nullptr;
  const int result = fails(false) ? SQLITE_CANTOPEN
                                  : usual_files->xOpen(usual_files, name, file, flags, out_flags);
  file->pMethods = file->pMethods != nullptr ? failing_methods(file->pMethods) : nullptr;
  return result;
}

class DiskFaults : public testing::Test {
 protected:
  DiskFaults() {
    static sqlite3_vfs failing_files = *usual_files;
    failing_files.zName = "failing";
    failing_files.xOpen = open_file;
    sqlite3_vfs_register(&failing_files, 1);
  }
  ~DiskFaults() override { disk = {}; }

  // Runs `work` with every operation of the disk failing in turn, in every way.
  template <typename Work>
  void fail_each(Work work) {
    for (const auto& [full, lasting] : {std::pair(false, false), {false, true}, {true, true}}) {
      for (long number = 0, failed = 1; failed > 0; ++number) {
        failed = work(Disk{number, lasting, full});
        failures_ += failed;
      }
    }
  }

  const test::TempVault folder_;
  long failures_ = 0;
};

using Operation = std::pair<const char*, int (*)(CDataSource&)>;  // 0 only when it is done

const Channel kChannel = {"1", "a", 3, "g", "renamed"};
const Filter kFilter = {"", "a", 1, "target", "result", "name"};
DataSource source(const std::string& id) {
  DataSource record = test::data_source(id, id == "a" ? 0 : 5);
  record.description = std::string(20'000, 'd');
  return record;
}

// A query that fails delivers nothing, one that succeeds all.
int query(CDataSource& vault) {
  std::vector<DataSource> sources;
  std::vector<Channel> channels;
  std::vector<Filter> filters;
  const int status[] = {vault.query_data_source("a", "", sources),
                        vault.query_channel("a", "", channels), vault.query_filter("a", filters)};
  EXPECT_EQ(sources.size(), status[0] == 0 ? 1U : 0U);
  EXPECT_EQ(channels.size(), status[1] == 0 ? 1U : 0U);
  EXPECT_EQ(filters.size(), status[2] == 0 ? 1U : 0U);
  return std::max({status[0], status[1], status[2]});
}

#define OPERATION(operation)                                        \
  {                                                                 \
#operation, [](CDataSource & vault) { return vault.operation; } \
  }
const Operation kOperations[] = {
    {"init", [](CDataSource&) { return 0; }},   {"query", query},
    OPERATION(insert_data_source(source("b"))), OPERATION(update_data_source(source("a"))),
    OPERATION(remove_data_source(source("a"))), OPERATION(insert_channel(kChannel)),
    OPERATION(update_channel(kChannel)),        OPERATION(remove_channel_by_guid("g")),
    OPERATION(remove_channel_by_vault_id("a")), OPERATION(insert_filter(kFilter)),
    OPERATION(remove_filter_by_vault_id("a")),
};

int run(int (*operation)(CDataSource&)) {
  CDataSource vault;
  const int status = vault.init();
  return status != 0 ? status : operation(vault);
}

}  // namespace

TEST_F(DiskFaults, OfTheVaultLeaveItSoundWithEveryAcknowledgedChangeAndNoPartOfAnother) {
  const std::string file = folder_.database();
  EXPECT_EQ(test::add("a", "a", R"([{"guid":"g","channel_index":1,"name":"n"}])"), 0);
  EXPECT_EQ(test::OpenVault()->insert_filter(kFilter), 0);
  const std::string stored = test::read_file(file);
  int refusals = 0;
  for (const std::string& bytes : {std::string(), stored}) {
    const auto restore = [&] {
      std::filesystem::remove(file + "-wal");
      std::filesystem::remove(file + "-shm");
      test::write_file(file, bytes);
    };
    for (const auto& [name, operation] : kOperations) {
      SCOPED_TRACE(name);
      if (bytes.empty() && operation != kOperations[0].second) {
        break;  // of an empty file only the first schema is looked at
      }
      restore();
      const std::string before = test::show();
      EXPECT_EQ(run(operation), 0);
      const std::string after = test::show();
      fail_each([&, work = operation](const Disk& failing) {
        restore();
        disk = failing;
        const int status = run(work);
        const Disk failed = std::exchange(disk, {});
        EXPECT_TRUE(status == 0 || failed.failures > 0);
        EXPECT_TRUE(status == 0 || !failed.full || status == kVaultNoSpace);
        refusals += status != 0 ? 1 : 0;
        const std::string now = test::show();
        EXPECT_TRUE(now == after || (now == before && status != 0)) << now;
        EXPECT_EQ(test::run_sql(file, "PRAGMA integrity_check"), "ok");
        return failed.failures;
      });
    }
  }
  EXPECT_GT(refusals, 100);
  RecordProperty("refusals", refusals);
  RecordProperty("failures", std::to_string(failures_));
}

TEST_F(DiskFaults, OfAnotherDatabaseAreReported) {
  const test::ConfigFiles files;
  test::write_fixed_files(files);
  test::Own own(files, "own");
  for (const test::Call& call : test::kExportedCalls) {
    if (call.name == std::string("query") || call.name == std::string("upgrade")) {
      fail_each([&](const Disk& failing) {
        disk = failing;
        const int result = call.run(own);
        const Disk failed = std::exchange(disk, {});
        EXPECT_TRUE(result == call.result || (result == 0 && failed.failures > 0)) << call.name;
        EXPECT_EQ(test::run_sql(own.database, "PRAGMA integrity_check"), "ok") << call.name;
        return failed.failures;
      });
    }
  }
  EXPECT_GT(failures_, 100);
  RecordProperty("failures", std::to_string(failures_));
}
