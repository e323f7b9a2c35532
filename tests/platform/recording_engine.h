// An engine of the vault database for tests: it checks and records the order of the calls, runs
// statements as late as its interface allows, and fails on request. Below it is SQLite.
#pragma once

#include <string>

namespace test {

// The calls since the last take_calls, separated by spaces. "queue" is not a call to the database:
// the engine keeps the statement until the flush.
std::string take_calls();

// The call after `calls` further ones fails, and no other; negative: none.
void fail_after(int calls);

}  // namespace test
