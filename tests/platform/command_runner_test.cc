#include <signal.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include "tests/support/library.h"

namespace {

struct Script : test::TempFolder {
  explicit Script(const std::string& text, mode_t mode = 0700) {
    test::write_file(path, text);
    chmod(path.c_str(), mode);
  }
  int run() const { return vorn_exec(0, 0, 0, path.c_str(), nullptr); }

  const std::string path = file("a script");
};

volatile sig_atomic_t alarms = 0;

}  // namespace

TEST(CommandRunner, GivesTheStatusWord) {
  EXPECT_EQ(Script("#!/bin/sh\nexit 255\n").run(), 255 << 8);
  EXPECT_EQ(Script("#!/bin/sh\nkill -KILL $$\n").run(), SIGKILL);
  EXPECT_EQ(Script("#!/no/such/interpreter\n").run(), -1);
  EXPECT_EQ(Script("exit 0\n").run(), -1);  // no shell runs it
  EXPECT_EQ(Script("#!/bin/sh\n", 0600).run(), -1);
  EXPECT_EQ(vorn_exec(0, 0, 0, nullptr, nullptr), -1);
}

TEST(CommandRunner, HandsEachArgumentOverUnchanged) {
  const Script script("#!/bin/sh\nprintf '%s,' \"$0\" \"$@\" > \"$0.seen\"\n");
  const char* const path = script.path.c_str();
  EXPECT_EQ(vorn_exec(0, 0, 0, path, "a b; $(id)", "", "-n *\n\"'\\\xFF", nullptr), 0);
  EXPECT_EQ(test::read_file(script.path + ".seen"), script.path + ",a b; $(id),,-n *\n\"'\\\xFF,");
}

TEST(CommandRunner, GivesTheProgramNothingOfThisProcessButItsStandardStreams) {
  ASSERT_EQ(dup2(STDIN_FILENO, 77), 77);  // not closed by an exec on its own
  signal(SIGPIPE, SIG_IGN);
  sigset_t blocked;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  sigprocmask(SIG_BLOCK, &blocked, nullptr);
  const Script script(
      "#!/bin/sh\n"
      "[ -e /proc/$$/fd/2 ] || exit 1\n"
      "[ ! -e /proc/$$/fd/77 ] || exit 2\n"
      "grep -q '^SigBlk:.0*$' /proc/self/status || exit 3\n"
      "kill -PIPE $$\n");
  EXPECT_EQ(script.run(), SIGPIPE);
}

TEST(CommandRunner, GoesOnWaitingAfterASignal) {
  struct sigaction action {};
  action.sa_handler = [](int) { alarms = alarms + 1; };  // without SA_RESTART
  sigaction(SIGALRM, &action, nullptr);
  const itimerval often = {{0, 20'000}, {0, 20'000}};
  setitimer(ITIMER_REAL, &often, nullptr);
  EXPECT_EQ(Script("#!/bin/sh\nsleep 0.3\nexit 4\n").run(), 4 << 8);
  EXPECT_GE(alarms, 2);
}
