#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <random>
#include <thread>

#include "orvaneip.h"
#include "tests/support/captured_log.h"
#include "tests/support/config_tree.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace {

using std::chrono::milliseconds;
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

  // What stands in the folder beside the tree and its lock.
  int left_over() const {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
      count += entry.path() == file_ || entry.path() == file_ + ".lock" ? 0 : 1;
    }
    return count;
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

// The names in the list, each of which must have its node. -1 when one has not.
int count_nodes(const std::string& file) {
  const Tree tree(kCfgRead, file);
  int count = tree.is_open() ? 0 : -1;
  for (const std::string& name : split(tree.value({"device", "list"}).c_str(), ',')) {
    if (tree.value({"device", name, "id"}) == name) {
      ++count;
    } else if (name != "(none)") {
      return -1;
    }
  }
  return count;
}

int add_nodes(const std::string& file, int writer, int count) {
  for (int i = 0; i < count; ++i) {
    if (!add_node(file, std::string("w").append(std::to_string(writer * 1'000'000 + i)))) {
      return 1;
    }
  }
  return 0;
}

TEST_F(TreeSave, ProcessesThatAddAtOnceLoseNothing) {
  std::vector<pid_t> writers;
  for (int writer = 0; writer < 6; ++writer) {
    writers.push_back(test::start([this, writer] { return add_nodes(file_, writer, 8); }));
  }
  for (const pid_t writer : writers) {
    EXPECT_EQ(test::wait_for(writer), 0);
  }
  EXPECT_EQ(count_nodes(file_), 48);
  EXPECT_EQ(left_over(), 0);
}

TEST_F(TreeSave, ThreadsThatAddAtOnceLoseNothingAndReadersSeeWholeFiles) {
  std::vector<std::thread> writers;
  for (int writer = 0; writer < 4; ++writer) {
    writers.emplace_back([this, writer] { EXPECT_EQ(add_nodes(file_, writer, 6), 0); });
  }
  int seen = 0;
  while (seen < 24 && !testing::Test::HasFailure()) {
    const int count = count_nodes(file_);
    ASSERT_GE(count, seen);
    seen = count;
  }
  for (std::thread& writer : writers) {
    writer.join();
  }
}

TEST_F(TreeSave, AKilledWriterLeavesAWholeFileAndNoLock) {
  std::mt19937 random(std::random_device{}());
  int before = 0;
  for (int round = 0; round < 25; ++round) {
    const pid_t writer = test::start([this, round] { return add_nodes(file_, round, 1'000'000); });
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 30'000));
    kill(writer, SIGKILL);
    ASSERT_EQ(test::wait_for(writer), -SIGKILL);
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(add_node(file_, std::string("after").append(std::to_string(round))));
    EXPECT_LT(std::chrono::steady_clock::now() - start, milliseconds(5'000));
    const int count = count_nodes(file_);
    EXPECT_GT(count, before);
    before = count;
    EXPECT_EQ(left_over(), 0);
  }
}

TEST_F(TreeSave, AFullDiskLeavesTheOldFile) {
  for (const rlim_t limit : {rlim_t{0}, rlim_t{100}}) {
    EXPECT_EQ(test::wait_for(test::start([this, limit] {
                std::signal(SIGXFSZ, SIG_IGN);
                const rlimit full = {limit, limit};
                setrlimit(RLIMIT_FSIZE, &full);
                Tree tree(kCfgChange, file_);
                const bool stored = tree.store({"device", "large"}, std::string(4'000, 'x'));
                test::take_log();
                const bool saved = tree.close();
                return stored && !saved && test::take_product_log().size() == 1 ? 0 : 1;
              })),
              0);
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
  EXPECT_EQ(after.st_mode, before.st_mode);
  EXPECT_EQ(after.st_uid, before.st_uid);
  EXPECT_EQ(after.st_gid, before.st_gid);
  EXPECT_NE(after.st_ino, before.st_ino);  // a new file, not the old one written over
}

TEST_F(TreeSave, NothingIsWrittenWhenNothingChanged) {
  const struct stat before = status();
  const std::function<void(Tree&)> kWork[] = {
      [](Tree&) {},
      [](Tree& tree) {
        tree.store({"device", "brand"}, "A");
      },
      [](Tree& tree) {
        tree.remove({"device", "none"});
      },
      [](Tree& tree) { tree.store({"other"}, "x"); },
      [](Tree& tree) {
        tree.store({"device", "brand"}, "B");
        tree.store({"device", "brand"}, "A");
      },
      [](Tree& tree) {
        tree.store({"device", "brand"}, "B");
        EXPECT_TRUE(tree.close(false));
      },
  };
  for (const auto& work : kWork) {
    Tree tree(kCfgChange, file_);
    work(tree);
    EXPECT_TRUE(tree.close());
    EXPECT_EQ(status().st_ino, before.st_ino);
  }
  EXPECT_TRUE(Tree(kCfgRead, file_).close());
  EXPECT_EQ(test::read_file(file_), kTree);
}

TEST_F(TreeSave, AReaderLeavesNoTrace) {
  EXPECT_EQ(Tree(kCfgRead, file_).value({"device", "brand"}), "A");
  EXPECT_FALSE(std::filesystem::exists(file_ + ".lock"));
}

TEST_F(TreeSave, ALinkStaysALinkAndIsLockedLikeItsFile) {
  std::filesystem::create_directory(folder_.file("links"));
  const std::string link = folder_.file("links/link.xml");
  std::filesystem::create_symlink("../tree.xml", link);
  ASSERT_TRUE(add_node(link, "n"));
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_EQ(count_nodes(file_), 1);
  EXPECT_TRUE(std::filesystem::exists(file_ + ".lock"));
}

TEST_F(TreeSave, AWriterWaitsForAnotherButNotForever) {
  auto holder = std::make_unique<Tree>(kCfgChange, file_);
  std::thread release([&holder] {
    std::this_thread::sleep_for(milliseconds(300));
    holder.reset();
  });
  const auto start = std::chrono::steady_clock::now();
  EXPECT_TRUE(Tree(kCfgChange, file_).is_open());
  EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(290));
  release.join();

  const Tree kept(kCfgChange, file_);
  test::take_log();
  const auto again = std::chrono::steady_clock::now();
  EXPECT_FALSE(Tree(kCfgChange, file_).is_open());
  const auto waited = std::chrono::steady_clock::now() - again;
  EXPECT_GE(waited, milliseconds(10'000));
  EXPECT_LT(waited, milliseconds(15'000));
  EXPECT_EQ(test::take_product_log().size(), 1U);
  EXPECT_TRUE(Tree(kCfgRead, file_).is_open());
}

}  // namespace
