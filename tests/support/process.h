// Child processes of a test.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace test {

struct Outcome {
  int exit_status;  // 0 to 255, or minus the signal that ended the program
  std::string output;
  std::string errors;
};

// Runs `program` with `arguments` (no shell), `input` as its standard input, and NAME=VALUE pairs
// added to its environment.
Outcome run(const std::string& program, const std::vector<std::string>& arguments,
            const std::string& input = "", const std::vector<std::string>& environment = {});

// Runs `work` in a forked child, which exits with its result. Returns the child's process id.
pid_t start(const std::function<int()>& work);

// Waits for a child. Returns its exit status, or minus the signal that ended it.
int wait_for(pid_t child);

}  // namespace test
