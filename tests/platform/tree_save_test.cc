#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>

#include "tests/support/config_tree.h"
#include "tests/support/library.h"
#include "tests/support/process.h"

namespace {

using std::chrono::steady_clock;
using test::Tree;

const std::string kTree = "<?xml version=\"1.0\"?>\n<device>\n  <brand>A</brand>\n</device>\n";

class TreeSave : public testing::Test {
 protected:
  TreeSave() { test::write_file(file_, kTree); }

  struct stat status() const {
    struct stat found {};
    EXPECT_EQ(stat(file_.c_str(), &found), 0);
    return found;
  }

  const test::TempDirectory directory_;
  const std::string file_ = directory_.file("tree.xml");
};

// Adds a node and its name in one save.
bool add_node(const std::string& file, int number) {
  Tree tree(kCfgChange, file);
  char top[] = "device";
  const std::string name = std::string("device_") + std::to_string(number);
  return tree.store({top, name, "device_id"}, name) &&
         add_device_node(tree.handle(), number, top) && tree.close();
}

TEST_F(TreeSave, ProcessesThatAddAtOnceLoseNothingAndReadersSeeWholeFiles) {
  std::vector<pid_t> processes;
  for (int first = 100; first < 700; first += 100) {
    processes.push_back(test::start([this, first] {
      int number = first;
      while (number < first + 6 && add_node(file_, number)) {
        ++number;
      }
      return first + 6 - number;
    }));
  }
  for (int i = 0; i < 200; ++i) {
    EXPECT_TRUE(Tree(kCfgRead, file_).is_open());
  }
  for (const pid_t process : processes) {
    EXPECT_EQ(test::wait_for(process), 0);
  }
  const Tree tree(kCfgRead, file_);
  const auto names = split(tree.value({"device", "device_node_list"}), ',');
  EXPECT_EQ(names.size(), 36U);
  for (const std::string& name : names) {
    EXPECT_EQ(tree.value({"device", name, "device_id"}), name);
  }
}

TEST_F(TreeSave, AFullDiskOrATreeTooLargeToBeOpenedAgainLeavesTheOldFile) {
  std::signal(SIGXFSZ, SIG_IGN);
  using Row = std::tuple<rlim_t, std::size_t, const char*>;
  for (const auto& [limit, size, reason] :
       {Row(100, 4'000, "File too large"),
        Row(RLIM_INFINITY, kMaxTreeFileBytes, "it would be larger than 64 MiB")}) {
    const rlimit full = {limit, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &full);
    Tree tree(kCfgChange, file_);
    EXPECT_TRUE(tree.store({"device", "large"}, std::string(size, 'x')));
    EXPECT_FALSE(tree.close());
    const std::vector log = {"[cfgtree] saving " + file_ + " failed: " + reason};
    EXPECT_EQ(test::take_product_log(), log);
    EXPECT_EQ(test::read_file(file_), kTree);
  }
}

TEST_F(TreeSave, ALinkStaysALinkAndItsFileKeepsModeAndOwner) {
  std::filesystem::create_directory(directory_.file("links"));
  const std::string link = directory_.file("links/link.xml");
  std::filesystem::create_symlink("../tree.xml", link);
  chmod(file_.c_str(), 0642);
  // Only the superuser can give a file away; for others its owner is already another test.
  [[maybe_unused]] const int given = chown(file_.c_str(), 1234, 2345);
  const struct stat before = status();
  ASSERT_TRUE(add_node(link, 0));
  const struct stat after = status();
  EXPECT_TRUE(after.st_mode == before.st_mode && after.st_uid == before.st_uid &&
              after.st_gid == before.st_gid);
  EXPECT_NE(after.st_ino, before.st_ino);  // a new file, not the old one written over
  EXPECT_TRUE(std::filesystem::is_symlink(link) && std::filesystem::exists(file_ + ".lock"));
}

TEST_F(TreeSave, NothingIsWrittenWhenNothingChanged) {
  const ino_t before = status().st_ino;
  for (const std::string values : {"", "A", "BA", "B"}) {
    Tree tree(kCfgChange, file_);
    for (const char value : values) {
      EXPECT_TRUE(tree.store({"device", "brand"}, std::string(1, value)));
    }
    EXPECT_FALSE(tree.remove({"device", "none"}) || tree.store({"other"}, "x"));
    EXPECT_TRUE(tree.close(values != "B"));
    EXPECT_EQ(status().st_ino, before);
  }
}

TEST_F(TreeSave, AWriterDoesNotWaitForever) {
  EXPECT_FALSE(!Tree(kCfgRead, file_).is_open() || std::filesystem::exists(file_ + ".lock"));
  const Tree kept(kCfgChange, file_);
  test::take_log();
  constexpr std::chrono::milliseconds wait(kTreeLockWaitMs);
  const auto start = steady_clock::now();
  EXPECT_FALSE(Tree(kCfgChange, file_).is_open());
  const auto waited = steady_clock::now() - start;
  EXPECT_TRUE(waited >= wait && waited < wait * 3 / 2);
  const std::vector log = {
      "[cfgtree] " + file_ +
      " is not opened: another writer holds its lock for longer than the wait"};
  EXPECT_EQ(test::take_product_log(), log);
  EXPECT_TRUE(Tree(kCfgRead, file_).is_open());
}

}  // namespace
