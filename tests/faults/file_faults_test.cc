// The system calls under the tree's file, the device tree's first file and the vault database fail
// one by one: this program's definitions come before those of the C library.
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

#include "tests/platform/run_sql.h"
#include "tests/support/config_tree.h"
#include "tests/support/vault_calls.h"

static long left = -1;  // calls until one fails; below 0: none does
static int failure = 0;
static std::string failed;

static bool fails(const char* call) {
  if (left < 0 || left-- > 0) {
    return false;
  }
  failed = call;
  errno = failure;
  return true;
}

#define FAILING(answer, name, parameters, ...)                                                   \
  extern "C" [[gnu::visibility("default")]] answer name parameters {                             \
    static const auto systems = reinterpret_cast<answer(*) parameters>(dlsym(RTLD_NEXT, #name)); \
    return fails(#name) ? -1 : systems(__VA_ARGS__);                                             \
  }
FAILING(int, stat, (const char* path, struct stat* status) noexcept, path, status)
FAILING(int, fstat, (int file, struct stat* status) noexcept, file, status)
FAILING(int, fchown, (int file, uid_t user, gid_t group) noexcept, file, user, group)
FAILING(int, fchmod, (int file, mode_t mode) noexcept, file, mode)
FAILING(int, mkdir, (const char* path, mode_t mode) noexcept, path, mode)
FAILING(int, mknod, (const char* path, mode_t mode, dev_t device) noexcept, path, mode, device)
FAILING(int, rename, (const char* from, const char* to) noexcept, from, to)
FAILING(int, fsync, (int file), file)
FAILING(int, fdatasync, (int file), file)
FAILING(ssize_t, read, (int file, void* bytes, std::size_t size), file, bytes, size)
FAILING(ssize_t, write, (int file, const void* bytes, std::size_t size), file, bytes, size)
FAILING(ssize_t, pwrite64, (int file, const void* bytes, std::size_t size, off64_t at), file, bytes,
        size, at)

extern "C" [[gnu::visibility("default")]] int open(const char* path, int flags, ...) {
  static const auto systems = reinterpret_cast<decltype(&open)>(dlsym(RTLD_NEXT, "open"));
  va_list list;
  va_start(list, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(list, mode_t) : 0;
  va_end(list);
  return fails("open") ? -1 : systems(path, flags, mode);
}

extern "C" [[gnu::visibility("default")]] int fcntl(int file, int command, ...) {
  static const auto systems = reinterpret_cast<decltype(&fcntl)>(dlsym(RTLD_NEXT, "fcntl"));
  va_list list;
  va_start(list, command);
  void* const argument = va_arg(list, void*);
  va_end(list);
  return fails("fcntl") ? -1 : systems(file, command, argument);
}

// The descriptor is gone, whatever the answer.
extern "C" [[gnu::visibility("default")]] int close(int file) {
  static const auto systems = reinterpret_cast<decltype(&close)>(dlsym(RTLD_NEXT, "close"));
  const bool is_failing = fails("close");
  const int answer = systems(file);
  errno = is_failing ? failure : errno;
  return is_failing ? -1 : answer;
}

namespace {

using std::filesystem::directory_iterator;

// Runs `work` with each of its calls failing in turn, and then `check`; both see the same folder,
// made by `prepare`. Returns the names of the calls that failed.
std::set<std::string> fail_each(int error, const std::function<void()>& prepare,
                                const std::function<bool()>& work,
                                const std::function<void(bool done)>& check) {
  std::set<std::string> names;
  for (long number = 0;; ++number) {
    prepare();
    const auto descriptors = std::distance(directory_iterator("/proc/self/fd"), {});
    failed.clear();
    failure = error;
    left = number;
    const bool done = work();
    left = -1;
    SCOPED_TRACE(failed + ' ' + std::to_string(number));
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
  const test::TempFolder folder;
  const std::string file = folder.file("tree.xml");
  const std::string before = "<d>\n  <a>1</a>\n</d>\n";
  const std::string after = "<d>\n  <a>2</a>\n</d>\n";
  const auto change = [&] {
    test::Tree tree(kCfgChange, file);
    return tree.is_open() && tree.store({"d", "a"}, "2") && tree.close();
  };
  const auto prepare = [&] {
    std::filesystem::remove(file + ".lock");
    test::write_file(file, before);
    // A superuser's save has to give the new file away as well.
    [[maybe_unused]] const int given = chown(file.c_str(), 1234, 2345);
  };
  const auto check = [&](bool done) {
    // The folder is synchronised when the new file stands.
    const bool may_stand = done || failed == "open" || failed == "fsync";
    const std::string bytes = test::read_file(file);
    EXPECT_TRUE(bytes == (done ? after : before) || (bytes == after && may_stand)) << bytes;
    EXPECT_FALSE(std::filesystem::exists(file + ".saving"));
    EXPECT_EQ(test::take_product_log().empty(), done);
    EXPECT_TRUE(change());
  };
  for (const int error : {EIO, EINTR, EACCES}) {
    EXPECT_GE(fail_each(error, prepare, change, check).size(), 8U);
  }
}

TEST(FileFaults, OfTheFirstFileOfTheDeviceTreeAreTold) {
  const std::filesystem::path folder = ORVANEIP_ROOT "/third_party/zelip/config";
  const std::filesystem::path file = folder / "zelip.xml";
  const std::string whole = "<?xml version=\"1.0\"?>";
  const auto prepare = [&] {
    std::filesystem::create_directories(folder);
    std::filesystem::remove(file);
  };
  const auto names = fail_each(EIO, prepare, initial_xml, [&](bool done) {
    const std::string bytes = std::filesystem::exists(file) ? test::read_file(file) : "";
    EXPECT_TRUE(bytes == whole || (!done && bytes.empty())) << bytes;
    EXPECT_TRUE(initial_xml());
  });
  EXPECT_GE(names.size(), 4U);
}

TEST(FileFaults, OfANewVaultAreTold) {
  const test::TempVault vault;
  setenv("ORVANE_VAULT", vault.file("new/folder/vault.db").c_str(), 1);
  const auto prepare = [&] { std::filesystem::remove_all(vault.file("new")); };
  for (const int error : {EIO, ENOSPC, EDQUOT, EFBIG, EROFS}) {
    int code = 0;
    std::set<int> codes;
    const auto add = [&] { return (code = test::add("a")) == 0; };
    const auto names = fail_each(error, prepare, add, [&](bool done) {
      codes.insert(code);
      EXPECT_TRUE(test::stored().size() == 1 || (!done && test::add("a") == 0));
      EXPECT_EQ(test::stored().size(), 1U);
    });
    EXPECT_GE(names.size(), 5U);
    EXPECT_EQ(codes.contains(metadata_vault::kVaultNoSpace), error != EIO && error != EROFS);
    EXPECT_EQ(codes.contains(metadata_vault::kVaultReadOnly), error == EROFS);
  }
}

}  // namespace
