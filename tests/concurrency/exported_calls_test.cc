// Many threads through every exported function, in random orders, on their own and on shared files.
#include "tests/support/exported_calls.h"

#include <algorithm>
#include <locale>
#include <random>
#include <thread>

void orvane_log_debug(const char*, ...) {}
void log_Debug(const char*, ...) {}

namespace {

constexpr int kThreads = 8;
constexpr int kRounds = 3;

// A program's locale may group the digits of numbers, in all of its threads.
struct Grouping : std::numpunct<char> {
  char do_thousands_sep() const override { return ','; }
  std::string do_grouping() const override { return "\3"; }
};

// Adding looks for a free index and then takes it: another thread may take it in between.
bool may_lose(const test::Call& call) { return call.name == std::string("add_and_remove"); }

void run_all(test::Own& own, unsigned seed) {
  std::vector<const test::Call*> calls;
  for (const test::Call& call : test::kExportedCalls) {
    calls.push_back(&call);
  }
  std::mt19937 random(seed);
  for (int round = 0; round < kRounds; ++round) {
    std::shuffle(calls.begin(), calls.end(), random);
    for (const test::Call* call : calls) {
      const int result = call->run(own);
      EXPECT_TRUE(result == call->result || (result == 0 && may_lose(*call)))
          << call->name << ' ' << result;
    }
    LogConsole("%s", own.id.c_str());
  }
}

}  // namespace

TEST(ExportedCalls, RunInManyThreadsAtOnce) {
  std::locale::global(std::locale(std::locale(), new Grouping));
  const test::TempVault vault;
  const test::ConfigFiles files;
  test::write_fixed_files(files);
  std::vector<std::unique_ptr<test::Own>> owns;
  for (int i = 0; i < kThreads; ++i) {
    owns.push_back(std::make_unique<test::Own>(files, "own" + std::to_string(i)));
    owns.back()->rules = owns.front()->rules;  // which any number of threads may read
  }
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back(
        [&, i] { run_all(*owns[static_cast<std::size_t>(i)], static_cast<unsigned>(i)); });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(test::stored().size(), kThreads);
}
