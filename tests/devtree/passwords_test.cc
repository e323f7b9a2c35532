#include <sys/stat.h>

#include <filesystem>

#include "base/fixed_paths.h"
#include "tests/support/config_files.h"
#include "tests/support/vault_calls.h"

namespace {

namespace fs = std::filesystem;

// Makes every call that a password may pass through, accepted and refused.
void make_calls(char* password, const test::ConfigFiles& files) {
  const std::string entry = R"({"channel_index":0,"type":1,"guid":"pa55-Word","name":"pa55-Word",)"
                            R"("target":"pa55-Word","result":"pa55-Word"})";
  char id[] = "a";
  std::vector<int> indexes;
  for (const std::string& list : {"[" + entry + "]", entry}) {
    test::add(id, password, list);
    test::modify(id, {R"("pa55-Word")", R"("pa55-Word")", "true", list}, indexes);
    devcfg_modify_filter(id, test::Json(list));
  }
  notify_camera_modified(password, password, 0);
  test::show(id);
  test::Tree tree(kCfgChange, files.device_tree());
  tree.store({"device", "device_000", "src_property_list", "pwd"}, password);
  tree.store({"other", "pwd"}, password);
  TDeviceInfo info;
  get_device(tree.handle(), 0, &info);
  find_device_exist(tree.handle(), id);
  tree.close();
  devcfg_check_builtin();
  aevt_remove_event(id);
}

TEST(Passwords, StayInPrivateFilesAndOutOfTheLog) {
  umask(0);
  char password[] = "pa55-Word";
  const test::TempVault vault;
  const test::ConfigFiles files;
  const std::string created = base::kDeviceTreePath;
  fs::create_directories(fs::path(created).parent_path());
  ASSERT_TRUE(initial_xml());
  fs::rename(created, files.device_tree());
  test::write_tree(files.builtin_list(), "device", "no=1;builtin_0/plugin=pa55-Word");
  make_calls(password, files);
  EXPECT_NE(test::read_file(files.device_tree()).find(password), std::string::npos);
  for (const std::string& file : {vault.database(), files.device_tree()}) {
    const bool is_tree = file == files.device_tree();
    for (const char* suffix : {"", is_tree ? ".lock" : "-wal", is_tree ? "" : "-shm"}) {
      EXPECT_EQ(fs::status(file + suffix).permissions(), fs::perms(0600)) << file << suffix;
    }
    test::write_file(file, "<device><pwd>pa55-Word</pwd><pa55-Word");
  }
  make_calls(password, files);  // the files cannot be opened now
  const auto log = test::take_log();
  EXPECT_GT(log.size(), 20U);
  for (const std::string& line : log) {
    EXPECT_EQ(line.find(password), std::string::npos) << line;
  }
}

}  // namespace
