// Memory runs out at the N-th block, for every N: this program's malloc and operator new come
// before those of the system.
#include <dlfcn.h>

#include <climits>
#include <cstdlib>
#include <new>

#include "tests/support/exported_calls.h"

#ifdef __SANITIZE_ADDRESS__
#define SYSTEMS(name) __interceptor_##name
#else
#define SYSTEMS(name) __libc_##name
#endif

extern "C" {
void* SYSTEMS(malloc)(std::size_t size_bytes);
void* SYSTEMS(calloc)(std::size_t count, std::size_t size_bytes);
void* SYSTEMS(realloc)(void* block, std::size_t size_bytes);
}

namespace {

thread_local long left = -1;      // blocks until one is refused; below 0: none is
thread_local bool lasts = false;  // all further blocks are refused too
thread_local long refused = 0;

bool refuse() {
  if (left < 0 || left-- > 0) {
    return false;
  }
  left = lasts ? 0 : -1;
  ++refused;
  return true;
}

void* make(std::size_t size_bytes) {
  void* block = std::malloc(size_bytes);
  return block != nullptr ? block : throw std::bad_alloc();
}

}  // namespace

extern "C" {
[[gnu::weak]] void __lsan_disable();
[[gnu::weak]] void __lsan_enable();

[[gnu::visibility("default")]] void* malloc(std::size_t size_bytes) {
  return refuse() ? nullptr : SYSTEMS(malloc)(size_bytes);
}
[[gnu::visibility("default")]] void* calloc(std::size_t count, std::size_t size_bytes) {
  return refuse() ? nullptr : SYSTEMS(calloc)(count, size_bytes);
}
[[gnu::visibility("default")]] void* realloc(void* block, std::size_t size_bytes) {
  return refuse() ? nullptr : SYSTEMS(realloc)(block, size_bytes);
}
}

void* operator new(std::size_t size_bytes) { return make(size_bytes); }
void* operator new[](std::size_t size_bytes) { return make(size_bytes); }
void* operator new(std::size_t size_bytes, const std::nothrow_t&) noexcept {
  return std::malloc(size_bytes);
}
void* operator new[](std::size_t size_bytes, const std::nothrow_t&) noexcept {
  return std::malloc(size_bytes);
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }

void orvane_log_debug(const char*, ...) {}
void log_Debug(const char*, ...) {}

namespace {

constexpr int kThrown = -1'000;
const std::string kChangesTree = "devcfg_check_builtin";

// Refuses the block with this number, counted from 0, and with `lasting` all after it.
int run(const test::Call& call, test::Own& own, long number, bool lasting) {
  refused = 0;
  lasts = lasting;
  left = number;
  int result = kThrown;
  try {
    result = call.run(own);
  } catch (const std::bad_alloc&) {
  }
  left = -1;
  return result;
}

// The C library opens it when it is first needed. The leak check cannot tell the loader's blocks
// from the program's here, since they come through the malloc above.
void load_what_exceptions_need() {
  if (__lsan_disable != nullptr) {
    __lsan_disable();
  }
  EXPECT_NE(dlopen("libgcc_s.so.1", RTLD_NOW), nullptr);
  if (__lsan_enable != nullptr) {
    __lsan_enable();
  }
}

}  // namespace

TEST(MemoryFaults, AreReportedOrThrownWithEverythingReleased) {
  load_what_exceptions_need();
  setenv("TMPDIR", "/dev/shm", 1);  // the disk is not what is tested
  const test::TempVault vault;
  const test::ConfigFiles files;
  test::write_fixed_files(files);
  test::Own own(files, "own");
  const std::string before = test::read_file(files.device_tree());
  EXPECT_EQ(devcfg_check_builtin(), 0);
  const std::string after = test::read_file(files.device_tree());
  long refusals = 0;
  for (const test::Call& call : test::kExportedCalls) {
    for (const bool lasting : {false, true}) {
      call.run(own);  // goes on with what it could not end before
      test::write_file(files.device_tree(), before);
      left = LONG_MAX;
      EXPECT_EQ(call.run(own), call.result) << call.name;
      const long blocks = LONG_MAX - std::exchange(left, -1);
      for (long number = 0; number <= blocks; ++number) {
        test::write_file(files.device_tree(), before);
        own.filters = test::Json(test::kFilters);  // without the text of a number that it keeps
        const int result = run(call, own, number, lasting);
        EXPECT_TRUE(result <= 0 || result == call.result) << call.name << number << ": " << result;
        // What was changed is changed as a whole, and told.
        const std::string tree = test::read_file(files.device_tree());
        EXPECT_TRUE(tree == before || tree == after) << call.name << number << ": " << tree;
        EXPECT_EQ(tree == after, result == 1 && call.name == kChangesTree) << call.name << number;
        refusals += refused;
      }
    }
  }
  EXPECT_GT(refusals, 20'000);
  RecordProperty("refusals", std::to_string(refusals));
}
