// The embedded log sinks, each in a child process: the first message settles where they write.

#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace {

using Sink = void (*)(const char* format, ...);

// The platform's sink, whether or not this program has one of that name as well.
Sink platform_sink(const char* name) { return reinterpret_cast<Sink>(dlsym(RTLD_NEXT, name)); }

void drop(const char* /*format*/, ...) {}

// The lines that a sink is to write, after sending the messages to `sink`.
std::string lines_to(Sink sink) {
  sink("%s of %d", "50%s%n", 7);
  sink("%s\r", "a\n[b] c\x1B\x7F\xC2\x85 \xC2\xA9\xC2\n");
  sink("%ls", L"no text: \xD800");
  sink("%s", "");
  sink("%s", "\xC2");
  std::string lines =
      "50%s%n of 7\na\\x0a[b] c\\x1b\\x7f\\xc2\\x85 \xC2\xA9\xC2\\x0a\\x0d\n\n\xC2\n";
  // Around the size of the sink's own buffer, and far beyond it.
  for (const std::size_t length : {1021U, 1022U, 1023U, 1024U, 100'000U}) {
    const std::string line = std::string(length, 'x') + '\n';
    sink("%s", std::string(length, 'x').c_str());
    sink("%s", line.c_str());
    lines += line + line;
  }
  return lines;
}

// What comes on standard error when a child logs with this ORVANE_LOG.
std::string standard_error(const std::string& setting, Sink sink) {
  const test::TempFolder folder;
  EXPECT_EQ(test::wait_for(test::start([&] {
              setenv("ORVANE_LOG", setting.c_str(), 1);
              dup2(open(folder.file("x").c_str(), O_WRONLY | O_CREAT, 0600), STDERR_FILENO);
              lines_to(sink);
              return 0;
            })),
            0);
  return test::read_file(folder.file("x"));
}

}  // namespace

TEST(LogSinks, WriteWholeLinesToWhereTheSettingSays) {
  const test::TempFolder folder;
  const std::string file = folder.file("log of = all");
  const std::string lines = lines_to(drop);
  for (const Sink sink : {platform_sink("log_Debug"), platform_sink("orvane_log_debug")}) {
    for (const std::string& silent : {std::string("off"), std::string("syslog"), file}) {
      EXPECT_EQ(standard_error(silent, sink), "");
    }
    for (const char* setting : {"", "stderr", "/no such folder/log"}) {
      EXPECT_TRUE(standard_error(setting, sink) == lines) << setting;
    }
  }
  EXPECT_TRUE(test::read_file(file) == lines + lines);
  EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms{0600});
}

TEST(LogSinks, LinesOfSeveralProcessesDoNotMix) {
  const test::TempFolder folder;
  setenv("ORVANE_LOG", folder.file("log").c_str(), 1);
  std::vector<pid_t> children;
  for (const char letter : {'a', 'b', 'c'}) {
    children.push_back(test::start([letter] {
      for (int i = 0; i < 50; ++i) {
        platform_sink("log_Debug")("%s", std::string(20'000, letter).c_str());
      }
      return 0;
    }));
  }
  for (const pid_t child : children) {
    EXPECT_EQ(test::wait_for(child), 0);
  }
  const std::string text = test::read_file(folder.file("log"));
  EXPECT_EQ(text.size(), 150U * 20'001);
  for (std::size_t at = 0; at < text.size(); at += 20'001) {
    EXPECT_EQ(text.find_first_not_of(text[at], at), at + 20'000);
  }
}
