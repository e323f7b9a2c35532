// The system calls below the library fail one by one, under a tree's file, the device tree's first
// file and databases: this program's definitions come before those of the C library.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <filesystem>
#include <functional>
#include <set>

#include "tests/support/exported_calls.h"
#include "tests/support/run_sql.h"

namespace {

struct Failing {
  int error;
  bool lasts = false;   // all calls after the first that failed fail too
  bool writes = false;  // only calls that take space on the disk do
  long left = 0;        // calls until one fails; below 0: none does
};
Failing failing{0, false, false, -1};
std::string failed;

bool fails(const std::string& call) {
  const bool takes_space = call.find("write") != std::string::npos;
  if (failing.left < 0 || (failing.writes && !takes_space) || failing.left-- > 0) {
    return false;
  }
  failing.left = failing.lasts ? 0 : -1;
  failed = call;
  errno = failing.error;
  return true;
}

}  // namespace

#define FAILING(result, name, parameters, ...)                                                    \
  extern "C" [[gnu::visibility("default")]] result name parameters {                              \
    static const auto original = reinterpret_cast<result(*) parameters>(dlsym(RTLD_NEXT, #name)); \
    return fails(#name) ? -1 : original(__VA_ARGS__);                                             \
  }
FAILING(int, stat, (const char* path, struct stat* status) noexcept, path, status)
FAILING(int, fstat, (int file, struct stat* status) noexcept, file, status)
FAILING(int, fchown, (int file, uid_t user, gid_t group) noexcept, file, user, group)
FAILING(int, fchmod, (int file, mode_t mode) noexcept, file, mode)
FAILING(int, mkdir, (const char* path, mode_t mode) noexcept, path, mode)
FAILING(int, mknod, (const char* path, mode_t mode, dev_t device) noexcept, path, mode, device)
FAILING(int, rename, (const char* from, const char* to) noexcept, from, to)
FAILING(int, link, (const char* from, const char* to) noexcept, from, to)
FAILING(int, fsync, (int file), file)
FAILING(int, fdatasync, (int file), file)
FAILING(ssize_t, read, (int file, void* bytes, std::size_t size), file, bytes, size)
FAILING(ssize_t, write, (int file, const void* bytes, std::size_t size), file, bytes, size)
FAILING(int, stat64, (const char* path, struct stat64* status) noexcept, path, status)
FAILING(int, fstat64, (int file, struct stat64* status) noexcept, file, status)
FAILING(int, ftruncate64, (int file, off64_t size) noexcept, file, size)
FAILING(ssize_t, pread64, (int file, void* bytes, std::size_t size, off64_t at), file, bytes, size,
        at)
FAILING(ssize_t, pwrite64, (int file, const void* bytes, std::size_t size, off64_t at), file, bytes,
        size, at)

#define FAILING_WITH(name, parameters, type, ...)                                            \
  extern "C" [[gnu::visibility("default")]] int name parameters {                            \
    static const auto original = reinterpret_cast<decltype(&name)>(dlsym(RTLD_NEXT, #name)); \
    va_list list;                                                                            \
    va_start(list, flags);                                                                   \
    const auto argument = va_arg(list, type);                                                \
    va_end(list);                                                                            \
    return fails(#name) ? -1 : original(__VA_ARGS__, flags, argument);                       \
  }
FAILING_WITH(open, (const char* path, int flags, ...), mode_t, path)
FAILING_WITH(open64, (const char* path, int flags, ...), mode_t, path)
FAILING_WITH(fcntl, (int file, int flags, ...), void*, file)

// The descriptor is closed, whatever the result.
extern "C" [[gnu::visibility("default")]] int close(int file) {
  static const auto original = reinterpret_cast<decltype(&close)>(dlsym(RTLD_NEXT, "close"));
  const bool is_failing = fails("close");
  const int result = original(file);
  errno = is_failing ? failing.error : errno;
  return is_failing ? -1 : result;
}

namespace {

using namespace metadata_vault;
using std::filesystem::directory_iterator;

// Runs `work` with each of its calls failing in turn, and then `check`; both see the same
// directory, made by `prepare`. Returns the names of the calls that failed.
std::set<std::string> fail_each(Failing how, const std::function<void()>& prepare,
                                const std::function<bool()>& work,
                                const std::function<void(bool done)>& check) {
  std::set<std::string> names;
  for (;; ++how.left) {
    prepare();
    const auto descriptors = std::distance(directory_iterator("/proc/self/fd"), {});
    failed.clear();
    failing = how;
    const bool done = work();
    failing.left = -1;
    SCOPED_TRACE(failed + ' ' + std::to_string(how.left));
    EXPECT_TRUE(done || !failed.empty());
    EXPECT_EQ(std::distance(directory_iterator("/proc/self/fd"), {}), descriptors);
    check(done);
    if (failed.empty()) {
      return names;
    }
    names.insert(failed);
  }
}

TEST(FileFaults, OfATreeLeaveItsOldFileOrTheNewOneAndNoLock) {
  test::keep_files_in_memory();
  const test::TempDirectory directory;
  const std::string file = directory.file("tree.xml");
  const std::string before = "<d>\n  <a>1</a>\n</d>\n";
  const std::string after = "<d>\n  <a>2</a>\n</d>\n";
  const auto change = [&] {
    test::Tree tree(kCfgChange, file);
    return tree.is_open() && tree.store({"d", "a"}, "2") && tree.close();
  };
  const auto prepare = [&] {
    std::filesystem::remove(file + ".lock");
    test::write_file(file, before);
    // A superuser's save also gives the new file to its owner.
    [[maybe_unused]] const int given = chown(file.c_str(), 1234, 2345);
  };
  const auto check = [&](bool done) {
    // The directory is synced when the new file has its name.
    const bool may_be_new = done || failed == "open" || failed == "fsync";
    const std::string bytes = test::read_file(file);
    EXPECT_TRUE(bytes == (done ? after : before) || (bytes == after && may_be_new)) << bytes;
    EXPECT_FALSE(std::filesystem::exists(file + ".saving"));
    EXPECT_EQ(test::take_product_log().empty(), done);
    EXPECT_TRUE(change());
  };
  for (const int error : {EIO, EINTR, EACCES}) {
    EXPECT_GE(fail_each({error}, prepare, change, check).size(), 8U);
  }
}

TEST(FileFaults, OfTheFirstFileOfTheDeviceTreeAreReported) {
  const std::filesystem::path directory = ORVANEIP_ROOT "/third_party/zelip/config";
  const std::filesystem::path file = directory / "zelip.xml";
  const std::string whole = "<?xml version=\"1.0\"?>";
  const auto prepare = [&] {
    std::filesystem::create_directories(directory);
    std::filesystem::remove(file);
  };
  const auto names = fail_each({EIO}, prepare, initial_xml, [&](bool done) {
    const std::string bytes = std::filesystem::exists(file) ? test::read_file(file) : "";
    EXPECT_TRUE(bytes == whole || (!done && bytes.empty())) << bytes;
    EXPECT_TRUE(initial_xml());
  });
  EXPECT_GE(names.size(), 4U);
}

TEST(FileFaults, OfANewVaultAreReported) {
  test::keep_files_in_memory();
  const test::TempVault vault;
  setenv("ORVANE_VAULT", vault.file("new/directory/vault.db").c_str(), 1);
  const auto prepare = [&] { std::filesystem::remove_all(vault.file("new")); };
  for (const int error : {EIO, ENOSPC, EDQUOT, EFBIG, EROFS}) {
    int code = 0;
    std::set<int> codes;
    const auto add = [&] { return (code = test::add("a")) == 0; };
    const auto names = fail_each({error}, prepare, add, [&](bool done) {
      codes.insert(code);
      EXPECT_TRUE(test::stored().size() == 1 || (!done && test::add("a") == 0));
      EXPECT_EQ(test::stored().size(), 1U);
    });
    EXPECT_GE(names.size(), 5U);
    EXPECT_EQ(codes.contains(kVaultNoSpace), error != EIO && error != EROFS);
    EXPECT_TRUE(codes.contains(kVaultReadOnly) || error != EROFS);
  }
}

using Operation = std::pair<const char*, int (*)(CDataSource&)>;  // 0 only when it is done

const Channel kChannel = {"1", "a", 3, "g", "renamed"};
const Filter kFilter = {"", "a", 1, "target", "result", "name"};
DataSource source(const std::string& id) {
  DataSource record = test::data_source(id, id == "a" ? 0 : 5);
  record.description = std::string(20'000, 'd');
  return record;
}

// A query that fails returns no record, one that succeeds returns all.
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

const Failing kDiskFaults[] = {{EIO}, {EIO, true}, {ENOSPC, true, true}};

TEST(FileFaults, OfTheVaultLeaveItSoundWithEveryAcknowledgedChangeAndNoPartOfAnother) {
  test::keep_files_in_memory();
  const test::TempVault vault;
  const std::string file = vault.database();
  EXPECT_EQ(test::add("a", "a", R"([{"guid":"g","channel_index":1,"name":"n"}])"), 0);
  EXPECT_EQ(test::OpenVault()->insert_filter(kFilter), 0);
  const std::string stored = test::read_file(file);
  const auto restore = [&] {
    std::filesystem::remove(file + "-wal");
    std::filesystem::remove(file + "-shm");
    test::write_file(file, stored);
  };
  int refusals = 0;
  for (const auto& [name, operation] : kOperations) {
    SCOPED_TRACE(name);
    restore();
    const std::string before = test::show();
    EXPECT_EQ(run(operation), 0);
    const std::string after = test::show();
    for (const Failing& how : kDiskFaults) {
      int status = 0;
      const auto work = [&, change = operation] { return (status = run(change)) == 0; };
      fail_each(how, restore, work, [&](bool done) {
        EXPECT_TRUE(done || !how.writes || status == kVaultNoSpace);
        refusals += done ? 0 : 1;
        const std::string now = test::show();
        EXPECT_TRUE(now == after || (now == before && !done)) << now;
        EXPECT_EQ(test::run_sql(file, "PRAGMA integrity_check"), "ok");
      });
    }
  }
  EXPECT_GT(refusals, 100);
  RecordProperty("refusals", refusals);
}

const std::set<std::string> kDatabaseCalls = {"query", "devcfg_load_table_schema",
                                              "devcfg_update_table", "upgrade"};

TEST(FileFaults, OfAnotherDatabaseAreReported) {
  test::keep_files_in_memory();
  const test::TempVault vault;
  const test::ConfigFiles files;
  test::write_fixed_files(files);
  test::Own own(files, "own");
  int rows = 0;
  for (const test::Call& call : test::kExportedCalls) {
    if (kDatabaseCalls.contains(call.name)) {
      ++rows;
      for (const Failing& how : kDiskFaults) {
        int result = 0;
        const auto names = fail_each(
            how, [] {}, [&] { return (result = call.run(own)) == call.result; },
            [&](bool done) {
              EXPECT_TRUE(done || result == 0) << call.name;
              EXPECT_EQ(test::run_sql(own.database, "PRAGMA integrity_check"), "ok");
            });
        EXPECT_TRUE(how.lasts || names.contains("pread64")) << call.name;
      }
    }
  }
  EXPECT_EQ(rows, std::ssize(kDatabaseCalls));
}

}  // namespace
