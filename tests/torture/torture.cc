#include "tests/torture/torture.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <list>
#include <random>
#include <thread>

#include "tests/support/process.h"

namespace test {
namespace {

using std::chrono::steady_clock;

unsigned setting(const char* name, unsigned otherwise) {
  const char* text = std::getenv(name);
  return text != nullptr ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : otherwise;
}

// A process that makes changes. The test's own process repeats on `state` those it acknowledged.
class Writer {
 public:
  Writer(Store& store, State& state, std::string name, unsigned long seed)
      : store_(store), state_(state), name_(std::move(name)), random_(seed) {
    int ends[2] = {-1, -1};
    EXPECT_EQ(pipe(ends), 0);
    pick();
    process_ = start([&] {
      for (Answer answer{}; (answer = store_.make(change_)) != Answer::kFailed; repeat(answer)) {
        EXPECT_EQ(write(ends[1], &answer, 1), 1);
      }
      return 1;
    });
    close(ends[1]);
    answers_ = ends[0];
  }

  // Waits for a few changes and kills it within about two times what one takes. The number of
  // changes that it acknowledged.
  unsigned kill_it(std::mt19937& random) {
    const auto begin = steady_clock::now();
    unsigned count = 0;
    for (unsigned long wanted = random() % 3; count < wanted && receive(); ++count) {
    }
    std::this_thread::sleep_for(length_ * (random() % 1'000) / 500);
    kill(process_, SIGKILL);
    EXPECT_EQ(wait_for(process_), -SIGKILL);
    for (; receive(); ++count) {
    }
    close(answers_);
    length_ = (length_ * 9 + (steady_clock::now() - begin) / (count + 1)) / 10;
    return count;
  }

  // The change that was not acknowledged any more may be found all the same. Was it begun?
  bool accept_last(const State& found) {
    const auto stored = found.find(change_.id);
    const Record record = stored != found.end() ? stored->second : Record();
    const auto steps = steps_of_change();
    const bool begun = std::find(steps.begin(), steps.end(), record) != steps.end();
    begun ? set(record) : void();
    return begun;
  }

 private:
  void pick() {
    const std::string id = name_ + '-' + std::to_string(random_() % 6);
    const auto other = static_cast<int>(random_() % static_cast<unsigned>(store_.kinds - 1));
    change_ = {id, state_.contains(id) ? 1 + other : 0, id + '/' + std::to_string(random_())};
  }

  std::vector<Record> steps_of_change() const {
    const auto before = state_.find(change_.id);
    return store_.steps(before != state_.end() ? before->second : Record(), change_);
  }

  void set(const Record& record) {
    record.empty() ? void(state_.erase(change_.id)) : void(state_[change_.id] = record);
  }

  void repeat(Answer answer) {
    answer == Answer::kDone ? set(steps_of_change().back()) : void();
    pick();
  }

  bool receive() {
    Answer answer{};
    const bool received = read(answers_, &answer, 1) == 1;
    received ? repeat(answer) : void();
    return received;
  }

  static inline steady_clock::duration length_ = std::chrono::milliseconds(5);

  Store& store_;
  State& state_;
  const std::string name_;
  std::mt19937 random_;
  Change change_;
  pid_t process_;
  int answers_;
};

void expect_next_writer_not_held_up(Store& store) {
  const auto start = steady_clock::now();
  if (const Answer added = store.make({"2-0", 0, "next"}); added != Answer::kRefused) {
    EXPECT_EQ(added, Answer::kDone);
    EXPECT_EQ(store.make({"2-0", 1, ""}), Answer::kDone);
  }
  EXPECT_LT(steady_clock::now() - start, std::chrono::seconds(5));
}

}  // namespace

void torture(Store& store) {
  const unsigned rounds = setting("ORVANE_TORTURE_ROUNDS", 20);
  const unsigned seed = setting("ORVANE_TORTURE_SEED", std::random_device{}());
  std::mt19937 random(seed);
  State state = store.read();
  unsigned acknowledged = 0;
  unsigned begun = 0;
  for (unsigned round = 0; round < rounds && !testing::Test::HasFailure(); ++round) {
    std::list<Writer> writers;
    for (unsigned number = 0; number <= round % 2; ++number) {
      writers.emplace_back(store, state, std::to_string(number), random());
    }
    for (Writer& writer : writers) {
      acknowledged += writer.kill_it(random);
    }
    expect_next_writer_not_held_up(store);
    const State found = store.read();
    for (Writer& writer : writers) {
      begun += writer.accept_last(found) ? 1U : 0U;
    }
    EXPECT_EQ(found, state) << "round " << round;
  }
  std::printf("seed %u: %u rounds, %u changes acknowledged, %u killed before they were\n", seed,
              rounds, acknowledged, begun);
  EXPECT_GT(acknowledged, rounds);
}

}  // namespace test
