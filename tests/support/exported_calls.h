// The exported functions as a table of calls that can be repeated: a test makes what is below them
// fail in each, or runs them in many threads.
#pragma once

#include <map>

#include "tests/support/columns.h"
#include "tests/support/config_files.h"
#include "tests/support/vault_calls.h"

namespace test {

inline constexpr char kFilters[] = R"([{"type":1,"target":"old","result":"new","name":5}])";

// What the calls work on. Each thread has its own; the vault database and the fixed paths, which
// lead to `files`, are shared.
struct Own {
  Own(const ConfigFiles& files, const std::string& name);

  std::string id;        // of a stored data source
  std::string database;  // an SQLite file
  Json name, channels;
  Json filters = Json(kFilters);
  Columns columns;                 // of its table t
  Columns missing_columns;         // those that its table u lacked
  Tree device, terminals, events;  // open trees
  std::shared_ptr<void*> rules;    // a copy of the rule file
};

struct Call {
  const char* name;
  int (*run)(Own& own);
  int result = 1;  // above 0
  // The results when a call of the configuration tree or the event service fails, by the start of
  // that call; the longest start counts.
  std::map<std::string, int> failing = {};
  // Undoes what a run that failed has left; null when that does not change the next run.
  void (*restore)(Own& own) = nullptr;
};
extern const std::vector<Call> kExportedCalls;

// The name of a test that has the call as its parameter.
inline void PrintTo(const Call& call, std::ostream* output) { *output << call.name; }

// Writes the files of the fixed paths.
void write_fixed_files(const ConfigFiles& files);

}  // namespace test
