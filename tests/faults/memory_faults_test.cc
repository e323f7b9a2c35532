// Memory runs out at the N-th block, for every N: this program's malloc and operator new come
// before the C library's.
#include <dlfcn.h>

#include <climits>
#include <cstdlib>
#include <new>
#include <set>

#include "tests/support/exported_calls.h"

#ifdef __SANITIZE_ADDRESS__
#define ORIGINAL(name) __interceptor_##name
#else
#define ORIGINAL(name) __libc_##name
#endif

extern "C" {
void* ORIGINAL(malloc)(std::size_t size_bytes);
void* ORIGINAL(calloc)(std::size_t count, std::size_t size_bytes);
void* ORIGINAL(realloc)(void* block, std::size_t size_bytes);
}

namespace {

thread_local long left = -1;      // blocks until one is refused; below 0: no refusal
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
  return refuse() ? nullptr : ORIGINAL(malloc)(size_bytes);
}
[[gnu::visibility("default")]] void* calloc(std::size_t count, std::size_t size_bytes) {
  return refuse() ? nullptr : ORIGINAL(calloc)(count, size_bytes);
}
[[gnu::visibility("default")]] void* realloc(void* block, std::size_t size_bytes) {
  return refuse() ? nullptr : ORIGINAL(realloc)(block, size_bytes);
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

// The C library loads it with the first exception. The leak check cannot distinguish the loader's
// blocks from the program's, since they come through the malloc above.
void load_unwinder() {
  if (__lsan_disable != nullptr) {
    __lsan_disable();
  }
  EXPECT_NE(dlopen("libgcc_s.so.1", RTLD_NOW), nullptr);
  if (__lsan_enable != nullptr) {
    __lsan_enable();
  }
}

bool takes_memory(const test::Call& call) {
  const std::set<std::string> without = {"check_token", "pack", "receive_events"};
  return !without.contains(call.name);
}

struct FixedFiles : test::ConfigFiles {
  FixedFiles() { test::write_fixed_files(*this); }
};

class Refusals {
 public:
  Refusals() {
    EXPECT_EQ(devcfg_check_builtin(), 0);
    after_ = test::read_file(files_.device_tree());
  }

  // Refuses each of the call's blocks in turn.
  void refuse_each(const test::Call& call, bool lasting) {
    call.run(own_);  // the first run may take other blocks
    restore(call);
    left = LONG_MAX;
    EXPECT_EQ(call.run(own_), call.result);
    const long blocks = LONG_MAX - std::exchange(left, -1);
    EXPECT_EQ(blocks > 0, takes_memory(call));
    long refusals = 0;
    for (long number = 0; number <= blocks; ++number) {
      SCOPED_TRACE(number);
      refuse(call, number, lasting);
      refusals += refused;
    }
    EXPECT_GE(refusals, blocks);
  }

 private:
  void restore(const test::Call& call) {
    if (call.restore != nullptr) {
      call.restore(own_);
    }
    test::write_file(files_.device_tree(), before_);
    own_.filters = test::Json(test::kFilters);  // without the text that json-c keeps of a number
  }

  void refuse(const test::Call& call, long number, bool lasting) {
    restore(call);
    const int result = run(call, own_, number, lasting);
    EXPECT_TRUE(result <= 0 || result == call.result) << result;
    // What was changed is changed as a whole, and reported.
    const std::string tree = test::read_file(files_.device_tree());
    EXPECT_TRUE(tree == before_ || tree == after_) << tree;
    EXPECT_EQ(tree == after_, result == 1 && call.name == kChangesTree);
  }

  const test::TempVault vault_;
  const FixedFiles files_;
  test::Own own_ = test::Own(files_, "own");
  const std::string before_ = test::read_file(files_.device_tree());
  std::string after_;
};

// A test of its own for each call, so that several processors share the work.
class MemoryFaults : public testing::TestWithParam<test::Call> {};

TEST_P(MemoryFaults, AreReportedOrThrownWithEverythingReleased) {
  load_unwinder();
  test::keep_files_in_memory();
  Refusals refusals;
  for (const bool lasting : {false, true}) {
    SCOPED_TRACE(lasting);
    refusals.refuse_each(GetParam(), lasting);
  }
}

INSTANTIATE_TEST_SUITE_P(EachCall, MemoryFaults, testing::ValuesIn(test::kExportedCalls));

}  // namespace
