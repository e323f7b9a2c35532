#include "tests/support/process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

#include "tests/support/temp_directory.h"

pid_t test::start(const std::function<int()>& work) {
  const pid_t child = fork();
  if (child < 0) {
    throw std::runtime_error("cannot fork");
  }
  if (child == 0) {
    [&]() noexcept { _exit(work()); }();
  }
  return child;
}

int test::wait_for(pid_t child) {
  int status = 0;
  if (waitpid(child, &status, 0) != child) {
    throw std::runtime_error("no such child process");
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

test::Outcome test::run(const std::string& program, const std::vector<std::string>& arguments,
                        const std::string& input, const std::vector<std::string>& environment) {
  const TempDirectory directory;
  const std::string streams[] = {directory.file("input"), directory.file("output"),
                                 directory.file("errors")};
  const pid_t child = start([&]() -> int {
    for (int i = 0; i < 3; ++i) {
      write_file(streams[i], i == 0 ? input : "");
      dup2(open(streams[i].c_str(), i == 0 ? O_RDONLY : O_WRONLY), i);
    }
    for (const std::string& variable : environment) {
      putenv(const_cast<char*>(variable.c_str()));
    }
    std::vector<char*> argv = {const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments) {
      argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    return execvp(program.c_str(), argv.data());
  });
  return {wait_for(child), read_file(streams[1]), read_file(streams[2])};
}
