// Processes that change a store until they are killed, each at a random moment.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <list>
#include <map>
#include <random>
#include <thread>

#include "tests/support/process.h"

namespace test {

using Record = std::vector<std::string>;  // its values; empty when it does not exist
using State = std::map<std::string, Record>;

struct Change {
  std::string id;     // a number; a writer changes its own records only
  int kind;           // 0: add the record, 1: remove it, above: the store's own
  std::string value;  // unlike that of any other change
};

// A process that makes changes. The test's own process repeats the acknowledged ones on `state`.
template <typename Store>
class Writer {
 public:
  Writer(Store& store, State& state, unsigned long first_id, unsigned long seed)
      : store_(store), state_(state), first_id_(first_id), random_(seed) {
    int ends[2] = {-1, -1};
    EXPECT_EQ(pipe(ends), 0);
    pick();
    process_ = start([&] {
      while (store_.make(change_) && write(ends[1], "", 1) == 1) {
        repeat();
      }
      return 1;
    });
    close(ends[1]);
    answers_ = ends[0];
  }

  // Kills the process within about twice the time of a change. Returns how many changes it
  // acknowledged.
  unsigned kill_it(std::mt19937& random) {
    static auto length = std::chrono::nanoseconds(5'000'000);
    const auto begin = std::chrono::steady_clock::now();
    unsigned count = receive(random() % 3);
    std::this_thread::sleep_for(length * (random() % 1'000) / 500);
    kill(process_, SIGKILL);
    EXPECT_EQ(wait_for(process_), -SIGKILL);
    count += receive(~0UL);
    close(answers_);
    length = (length * 9 + (std::chrono::steady_clock::now() - begin) / (count + 1)) / 10;
    return count;
  }

  // Accepts that the last change is found, although the process could not acknowledge it any more.
  void accept_last(State found) {
    const Record& record = found[change_.id];
    std::find(steps_.begin(), steps_.end(), record) != steps_.end() ? set(record) : void();
  }

 private:
  void pick() {
    const std::string id = std::to_string(first_id_ + random_() % 6);
    const int other = 1 + static_cast<int>(random_() % 1'000) % (Store::kKinds - 1);
    change_ = {id, state_.contains(id) ? other : 0, id + '/' + std::to_string(random_())};
    steps_ = store_.steps(state_.contains(id) ? state_[id] : Record(), change_);
  }
  void set(const Record& record) {
    record.empty() ? void(state_.erase(change_.id)) : void(state_[change_.id] = record);
  }
  void repeat() {
    set(steps_.back());
    pick();
  }
  unsigned receive(unsigned long at_most) {
    unsigned count = 0;
    for (char answer = 0; count < at_most && read(answers_, &answer, 1) == 1; ++count) {
      repeat();
    }
    return count;
  }

  Store& store_;
  State& state_;
  const unsigned long first_id_;
  std::mt19937 random_;
  Change change_;
  std::vector<Record> steps_;
  pid_t process_;
  int answers_;
};

// A Store makes changes, returns what a reader may see of a record while one is made (in order, the
// outcome last), and reads all records. The test fails when the store is not sound, when a change
// is lost or is not a writer's, and when the next writer cannot write.
template <typename Store>
void torture(Store&& store) {
  const char* setting = std::getenv("ORVANE_TORTURE_ROUNDS");
  const unsigned long rounds = setting != nullptr ? std::strtoul(setting, nullptr, 10) : 20;
  std::mt19937 random(std::random_device{}());
  State state = store.read();
  unsigned long acknowledged = 0;
  for (unsigned long round = 0; round < rounds && !testing::Test::HasFailure(); ++round) {
    std::list<Writer<Store>> writers;
    for (unsigned long first_id = 0; first_id <= round % 2 * 6; first_id += 6) {
      writers.emplace_back(store, state, first_id, random());
    }
    for (auto& writer : writers) {
      acknowledged += writer.kill_it(random);
    }
    EXPECT_TRUE(store.make({"12", 0, "next"}) && store.make({"12", 1, ""}));
    const State found = store.read();
    for (auto& writer : writers) {
      writer.accept_last(found);
    }
    EXPECT_EQ(found, state) << "round " << round;
  }
  std::printf("%lu rounds, %lu changes acknowledged\n", rounds, acknowledged);
  EXPECT_GT(acknowledged, rounds);
}

}  // namespace test
