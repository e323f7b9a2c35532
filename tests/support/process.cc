#include "tests/support/process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

#include "tests/support/temp_folder.h"

namespace test {

pid_t start(const std::function<int()>& work) {
  const pid_t child = fork();
  if (child < 0) {
    throw std::runtime_error("cannot fork");
  }
  if (child == 0) {
    try {
      _exit(work());
    } catch (...) {
      _exit(126);
    }
  }
  return child;
}

int wait_for(pid_t child) {
  int status = 0;
  if (waitpid(child, &status, 0) != child) {
    throw std::runtime_error("no such child process");
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

Outcome run(const std::string& program, const std::vector<std::string>& arguments,
            const std::string& input, const std::vector<std::string>& environment) {
  const TempFolder folder;
  const char* const kFiles[] = {"input", "output", "errors"};
  const pid_t child = start([&]() -> int {
    for (int i = 0; i < 3; ++i) {
      write_file(folder.file(kFiles[i]), i == 0 ? input : "");
      dup2(open(folder.file(kFiles[i]).c_str(), i == 0 ? O_RDONLY : O_WRONLY), i);
    }
    for (const std::string& variable : environment) {
      putenv(const_cast<char*>(variable.c_str()));
    }
    std::vector<char*> argv = {const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments) {
      argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    execvp(program.c_str(), argv.data());
    return 127;
  });
  const int status = wait_for(child);
  return {status, read_file(folder.file("output")), read_file(folder.file("errors"))};
}

}  // namespace test
