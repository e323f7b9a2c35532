// Processes that change a store until they are killed, each at a random moment.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace test {

using Record = std::vector<std::string>;  // its values; none: there is no such record
using State = std::map<std::string, Record>;

struct Change {
  std::string id;     // "WRITER-NUMBER"; a writer changes its own records only
  int kind;           // 0: add the record, 1: remove it, above: the store's own
  std::string value;  // unlike that of any other change
};

enum class Answer : char { kDone = 'y', kRefused = 'n', kFailed = '!' };

class Store {
 public:
  explicit Store(int kinds_of_change) : kinds(kinds_of_change) {}
  virtual ~Store() = default;

  // Makes the change. kRefused when the store is full: then nothing has changed.
  virtual Answer make(const Change& change) = 0;

  // What a reader may see of the record while the change is made, in order; at last its outcome.
  virtual std::vector<Record> steps(const Record& before, const Change& change) const = 0;

  // All records. Fails the test when the store is not sound.
  virtual State read() = 0;

  const int kinds;
};

// Fails the test when an acknowledged change is lost, when anything else than the change that a
// killed writer was about to make differs, and when the next writer is held up. The environment
// variables ORVANE_TORTURE_ROUNDS (20) and ORVANE_TORTURE_SEED (random, and printed) are its
// settings.
void torture(Store& store);

}  // namespace test
