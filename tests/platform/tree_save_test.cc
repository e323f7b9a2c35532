#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include "tests/support/config_tree.h"
#include "tests/support/library.h"
#include "tests/support/process.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using test::Tree;

const std::string kTree = "<?xml version=\"1.0\"?>\n<device>\n  <brand>A</brand>\n</device>\n";

class TreeSave : public testing::Test {
 protected:
  TreeSave() { test::write_file(file_, kTree); }

  // What stands in the folder beside the tree and its lock.
  long left_over() const {
    using Entries = std::filesystem::directory_iterator;
    return std::count_if(Entries(folder_.path()), Entries(), [this](const auto& entry) {
      return entry.path() != file_ && entry.path() != file_ + ".lock";
    });
  }

  struct stat status() const {
    struct stat found {};
    EXPECT_EQ(stat(file_.c_str(), &found), 0);
    return found;
  }

  const test::TempFolder folder_;
  const std::string file_ = folder_.file("tree.xml");
};

// Adds a name to the list in the tree, and a node of that name, in one save.
bool add_node(const std::string& file, const std::string& name) {
  Tree tree(kCfgChange, file);
  std::string list = tree.value({"device", "list"});
  list = list == "(none)" ? name : list + ',' + name;
  return tree.store({"device", "list"}, list) && tree.store({"device", name, "id"}, name) &&
         tree.close();
}

// The names in the list, each of which must have its node.
int count_nodes(const std::string& file) {
  const Tree tree(kCfgRead, file);
  EXPECT_TRUE(tree.is_open());
  const std::string list = tree.value({"device", "list"});
  const auto names = split(list == "(none)" ? "" : list.c_str(), ',');
  for (const std::string& name : names) {
    EXPECT_EQ(tree.value({"device", name, "id"}), name);
  }
  return static_cast<int>(names.size());
}

TEST_F(TreeSave, ProcessesAndThreadsThatAddAtOnceLoseNothingAndReadersSeeWholeFiles) {
  const auto add_nodes = [this](int writer) {
    int added = 0;
    while (added < 6 &&
           add_node(file_, std::string("w").append(std::to_string(writer * 6 + added)))) {
      ++added;
    }
    return 6 - added;
  };
  std::vector<pid_t> processes;
  std::vector<std::thread> threads;
  for (int writer = 0; writer < 6; ++writer) {
    processes.push_back(test::start([&, writer] { return add_nodes(writer); }));
  }
  for (int writer = 6; writer < 8; ++writer) {
    threads.emplace_back([&, writer] { EXPECT_EQ(add_nodes(writer), 0); });
  }
  const auto end = steady_clock::now() + std::chrono::seconds(60);
  for (int seen = 0; seen < 48 && steady_clock::now() < end && !HasFailure();) {
    const int count = count_nodes(file_);
    EXPECT_GE(count, seen);
    seen = count;
  }
  std::for_each(threads.begin(), threads.end(), [](std::thread& thread) { thread.join(); });
  for (const pid_t process : processes) {
    EXPECT_EQ(test::wait_for(process), 0);
  }
  EXPECT_EQ(count_nodes(file_), 48);
  EXPECT_EQ(left_over(), 0);
}

TEST_F(TreeSave, AFullDiskLeavesTheOldFile) {
  for (const rlim_t limit : {rlim_t{0}, rlim_t{100}}) {
    const pid_t child = test::start([this, limit] {
      std::signal(SIGXFSZ, SIG_IGN);
      const rlimit full = {limit, limit};
      setrlimit(RLIMIT_FSIZE, &full);
      Tree tree(kCfgChange, file_);
      const bool stored = tree.store({"device", "large"}, std::string(4'000, 'x'));
      test::take_log();
      return stored && !tree.close() && test::take_product_log().size() == 1 ? 0 : 1;
    });
    EXPECT_EQ(test::wait_for(child), 0);
    EXPECT_EQ(test::read_file(file_), kTree);
    EXPECT_EQ(left_over(), 0);
  }
}

TEST_F(TreeSave, ATreeThatCouldNotBeOpenedAgainIsNotSaved) {
  Tree tree(kCfgChange, file_);
  ASSERT_TRUE(tree.store({"device", "large"}, std::string(65U << 20, 'x')));
  EXPECT_FALSE(tree.close());
  EXPECT_EQ(test::read_file(file_), kTree);
}

TEST_F(TreeSave, ModeAndOwnerAreKept) {
  chmod(file_.c_str(), 0642);
  // Only the superuser can give a file away; for others its owner is already another test.
  [[maybe_unused]] const int given = chown(file_.c_str(), 1234, 2345);
  const struct stat before = status();
  ASSERT_TRUE(add_node(file_, "n"));
  const struct stat after = status();
  EXPECT_TRUE(after.st_mode == before.st_mode && after.st_uid == before.st_uid &&
              after.st_gid == before.st_gid);
  EXPECT_NE(after.st_ino, before.st_ino);  // a new file, not the old one written over
}

TEST_F(TreeSave, NothingIsWrittenWhenNothingChanged) {
  EXPECT_EQ(Tree(kCfgRead, file_).value({"device", "brand"}), "A");
  EXPECT_FALSE(std::filesystem::exists(file_ + ".lock") || left_over() != 0);
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
  EXPECT_EQ(test::read_file(file_), kTree);
}

TEST_F(TreeSave, ALinkStaysALinkAndIsLockedLikeItsFile) {
  std::filesystem::create_directory(folder_.file("links"));
  const std::string link = folder_.file("links/link.xml");
  std::filesystem::create_symlink("../tree.xml", link);
  ASSERT_TRUE(add_node(link, "n"));
  EXPECT_TRUE(std::filesystem::is_symlink(link) && std::filesystem::exists(file_ + ".lock"));
  EXPECT_EQ(count_nodes(file_), 1);
}

TEST_F(TreeSave, AWriterDoesNotWaitForever) {
  const Tree kept(kCfgChange, file_);
  test::take_log();
  const auto start = steady_clock::now();
  EXPECT_FALSE(Tree(kCfgChange, file_).is_open());
  const auto waited = steady_clock::now() - start;
  EXPECT_TRUE(waited >= milliseconds(10'000) && waited < milliseconds(15'000));
  EXPECT_EQ(test::take_product_log().size(), 1U);
  EXPECT_TRUE(Tree(kCfgRead, file_).is_open());
}

}  // namespace
