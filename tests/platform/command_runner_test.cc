#include <signal.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include "tests/support/library.h"

static volatile sig_atomic_t alarms = 0;

TEST(CommandRunner, PassesTheArgumentsUnchangedAndNothingElseAndReturnsTheStatusWord) {
  const test::TempDirectory directory;
  const std::string path = directory.file("a script");
  const auto run = [&path](const std::string& text, mode_t mode = 0700) {
    test::write_file(path, text);
    chmod(path.c_str(), mode);
    return vorn_exec(0, 0, 0, path.c_str(), "a b; $(id)", "", "-n *\n\"'\\\xFF", nullptr);
  };
  EXPECT_EQ(run("#!/bin/sh\nprintf '%s,' \"$0\" \"$@\" > \"$0.seen\"\nexit 255\n"), 255 << 8);
  EXPECT_EQ(test::read_file(path + ".seen"), path + ",a b; $(id),,-n *\n\"'\\\xFF,");
  EXPECT_EQ(run("#!/no/such/interpreter\n"), -1);
  EXPECT_EQ(run("exit 0\n"), -1);  // no shell runs it
  EXPECT_EQ(run("#!/bin/sh\n", 0600), -1);
  EXPECT_EQ(vorn_exec(0, 0, 0, nullptr, nullptr), -1);

  ASSERT_EQ(dup2(STDIN_FILENO, 77), 77);  // stays open across an exec
  signal(SIGPIPE, SIG_IGN);
  sigset_t blocked;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  sigprocmask(SIG_BLOCK, &blocked, nullptr);
  struct sigaction action {};
  action.sa_handler = [](int) { alarms = alarms + 1; };  // without SA_RESTART
  sigaction(SIGALRM, &action, nullptr);
  const itimerval often = {{0, 20'000}, {0, 20'000}};
  setitimer(ITIMER_REAL, &often, nullptr);
  EXPECT_EQ(run("#!/bin/sh\n[ -e /proc/$$/fd/2 ] || exit 1\n[ ! -e /proc/$$/fd/77 ] || exit 2\n"
                "grep -q '^SigBlk:.0*$' /proc/self/status || exit 3\nsleep 0.3\nkill -PIPE $$\n"),
            SIGPIPE);
  EXPECT_GE(alarms, 2);
  signal(SIGCHLD, SIG_IGN);
  EXPECT_EQ(run("#!/bin/sh\n"), -1);  // its end cannot be waited for
}
