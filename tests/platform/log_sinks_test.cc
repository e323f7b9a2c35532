// The embedded log sinks, each in a child process, since the first message of a process decides
// where they write.

#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <new>
#include <set>

#include "foundation/split.h"
#include "tests/support/process.h"
#include "tests/support/temp_directory.h"

namespace {

using Sink = void (*)(const char* format, ...);
void drop(const char* /*format*/, ...) {}

bool has_memory = true;

// Sends messages to `sink`, and returns the lines that it must write.
std::string lines_to(Sink sink) {
  sink("%s of %d", "50%s%n", 7);
  sink("%s\r", "a\n[b] c\x1B\x7F\xC2\x85 \xC2\xA9\xC2\n");
  sink("%ls", L"no text: \xD800");
  has_memory = false;
  sink("%s", "a message that there is no memory for\n");
  has_memory = true;
  sink("%s", "");
  sink("%s", "\xC2");
  std::string lines =
      "50%s%n of 7\na\\x0a[b] c\\x1b\\x7f\\xc2\\x85 \xC2\xA9\xC2\\x0a\\x0d\n\n\xC2\n";
  // Short and long messages.
  for (const std::size_t length : {1021U, 1022U, 1023U, 1024U, 100'000U}) {
    const std::string line = std::string(length, 'x') + '\n';
    sink("%s", std::string(length, 'x').c_str());
    sink("%s", line.c_str());
    lines += line + line;
  }
  return lines;
}

}  // namespace

[[gnu::noinline]] void* operator new(std::size_t size_bytes) {
  void* block = has_memory ? std::malloc(size_bytes) : nullptr;
  return block != nullptr ? block : throw std::bad_alloc();
}
[[gnu::noinline]] void* operator new(std::size_t size_bytes, const std::nothrow_t&) noexcept {
  return has_memory ? std::malloc(size_bytes) : nullptr;
}
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t /*size_bytes*/) noexcept {
  std::free(block);
}

TEST(LogSinks, WriteWholeLinesToTheDestinationOfTheSettingAndDoNotMixThoseOfProcesses) {
  const test::TempDirectory directory;
  const std::string file = directory.file("log of = all");
  const std::string lines = lines_to(drop);
  for (const std::string& setting : {file, {"off"}, {"syslog"}, {""}, {"stderr"}, {"/none/x"}}) {
    std::map<std::string, pid_t> children;
    for (const std::string name : {"log_Debug", "orvane_log_debug"}) {
      test::write_file(directory.file(name), "");
      children[name] = test::start([&] {
        setenv("ORVANE_LOG", setting.c_str(), 1);
        dup2(open(directory.file(name).c_str(), O_WRONLY), STDERR_FILENO);
        lines_to(reinterpret_cast<Sink>(dlsym(RTLD_NEXT, name.c_str())));
        return 0;
      });
    }
    const bool is_silent = setting == file || setting == "off" || setting == "syslog";
    for (const auto& [name, child] : children) {
      EXPECT_EQ(test::wait_for(child), 0);
      EXPECT_TRUE(test::read_file(directory.file(name)) == (is_silent ? "" : lines)) << setting;
    }
  }
  const auto sorted = [](const std::string& text) {
    const auto parts = split(text, '\n');
    return std::multiset<std::string>(parts.begin(), parts.end());
  };
  EXPECT_TRUE(sorted(test::read_file(file)) == sorted(lines + lines));
  EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms{0600});
}
