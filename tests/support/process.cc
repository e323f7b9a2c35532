#include "tests/support/process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

#include "tests/support/temp_folder.h"

namespace test {
namespace {

void connect(const std::string& file, int flags, int descriptor) {
  const int opened = open(file.c_str(), flags, 0600);
  if (opened < 0 || dup2(opened, descriptor) < 0) {
    _exit(127);
  }
}

}  // namespace

pid_t start(const std::function<int()>& work) {
  const pid_t child = fork();
  if (child < 0) {
    throw std::runtime_error("cannot fork");
  }
  if (child == 0) {
    int status = 126;
    try {
      status = work();
    } catch (...) {
    }
    _exit(status);
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
  write_file(folder.file("input"), input);
  const pid_t child = start([&]() -> int {
    connect(folder.file("input"), O_RDONLY, STDIN_FILENO);
    connect(folder.file("output"), O_WRONLY | O_CREAT, STDOUT_FILENO);
    connect(folder.file("errors"), O_WRONLY | O_CREAT, STDERR_FILENO);
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
  return {status < 0 ? -1 : status, read_file(folder.file("output")),
          read_file(folder.file("errors"))};
}

}  // namespace test
