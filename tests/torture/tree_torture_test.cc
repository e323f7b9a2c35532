#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "orvaneip.h"
#include "tests/support/config_tree.h"
#include "tests/support/temp_folder.h"
#include "tests/torture/torture.h"

namespace {

using test::Answer;
using test::Change;
using test::Record;
using test::Tree;

constexpr int kNumbers = 20;

// A record is a node's identifier and description. The nodes make the file large enough to be
// caught half-written.
class TreeStore : public test::Store {
 public:
  TreeStore() : Store(3) { test::write_file(file_, ""); }

  Answer make(const Change& change) override {
    Tree tree(kCfgChange, file_);
    const std::string node = node_of(change.id);
    bool done = tree.is_open();
    if (change.kind == 1) {
      done = done && tree.remove({"device", node}) && drop_name(tree, node);
    } else {
      char top[] = "device";
      done = done && tree.store({"device", node, "device_id"}, change.id) &&
             tree.store({"device", node, "description"}, change.value) &&
             tree.store({"device", node, "notes"}, notes(change.value));
      done =
          done && (change.kind != 0 || add_device_node(tree.handle(), number_of(change.id), top));
    }
    return done && tree.close() ? Answer::kDone : Answer::kFailed;
  }

  std::vector<Record> steps(const Record& /*before*/, const Change& change) const override {
    return {change.kind == 1 ? Record() : Record{change.value}};
  }

  test::State read() override {
    const Tree tree(kCfgRead, file_);
    EXPECT_TRUE(tree.is_open());
    auto names = split(tree.value({"device", "device_node_list"}).c_str(), ',');
    test::State state;
    for (int number = 0; number < kNumbers; ++number) {
      TDeviceInfo info;
      if (get_device(tree.handle(), number, &info)) {
        state[info.device_id] = {info.description};
        const std::string node = node_of(info.device_id);
        EXPECT_EQ(tree.value({"device", node, "notes"}), notes(info.description));
        EXPECT_EQ(std::erase(names, node), 1U);
      }
    }
    EXPECT_TRUE(names.empty() || names.front() == "NULL" || names.front() == "(none)");
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
      EXPECT_TRUE(entry.path() == file_ || entry.path() == file_ + ".lock") << entry.path();
    }
    return state;
  }

 private:
  static int number_of(const std::string& id) { return (id[0] - '0') * 6 + id[2] - '0'; }
  static std::string node_of(const std::string& id) {
    return "device_" + std::to_string(1'000 + number_of(id)).substr(1);
  }
  static std::string notes(const std::string& value) {
    std::string text;
    for (int i = 0; i < 400; ++i) {
      text += value + '\n';
    }
    return text;
  }
  static bool drop_name(Tree& tree, const std::string& node) {
    std::string list;
    for (const auto& name : split(tree.value({"device", "device_node_list"}).c_str(), ',')) {
      list += name == node ? "" : (list.empty() ? "" : ",") + name;
    }
    return tree.store({"device", "device_node_list"}, list.empty() ? "NULL" : list);
  }

  const test::TempFolder folder_;
  const std::string file_ = folder_.file("tree.xml");
};

TEST(Torture, TreeKeepsWhatItAcknowledged) {
  TreeStore store;
  test::torture(store);
}

}  // namespace
