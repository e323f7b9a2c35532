#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <thread>

#include "tests/support/library.h"

// One test: its steps share the one fixed path.
TEST(InitialXml, CreatesTheFileOnceAndNeverEmptiesIt) {
  const std::string folder = ORVANEIP_ROOT "/third_party/zelip/config";
  const std::string file = folder + "/zelip.xml";
  const std::string tag = "[libdevcfg] ";
  const std::vector<std::string> failed = {tag + "check_file_exist, File " + file + " not exist",
                                           tag + "initial_xml, File open error: " + file};
  std::filesystem::remove_all(ORVANEIP_ROOT);
  EXPECT_FALSE(initial_xml()) << "no folder";
  EXPECT_EQ(test::take_product_log(), failed);
  std::filesystem::create_directories(folder);
  rlimit old{};
  getrlimit(RLIMIT_FSIZE, &old);
  signal(SIGXFSZ, SIG_IGN);
  const rlimit five_bytes{5, old.rlim_max};
  setrlimit(RLIMIT_FSIZE, &five_bytes);
  EXPECT_FALSE(initial_xml()) << "a full disk";
  setrlimit(RLIMIT_FSIZE, &old);
  EXPECT_EQ(test::read_file(file), "") << "half a declaration";
  EXPECT_EQ(test::take_product_log(), failed);

  std::filesystem::remove(file);
  std::filesystem::create_symlink("elsewhere.xml", file);
  EXPECT_TRUE(initial_xml()) << "a link that leads nowhere yet";
  EXPECT_EQ(test::read_file(folder + "/elsewhere.xml"), "<?xml version=\"1.0\"?>");
  test::write_file(file, "<device/>");
  EXPECT_TRUE(initial_xml());
  EXPECT_EQ(test::read_file(file), "<device/>");
  EXPECT_EQ(test::take_log().size(), 1U) << "the missing file only";

  std::filesystem::remove(file);
  std::vector<std::thread> threads(8);
  for (std::thread& thread : threads) {
    thread = std::thread([] { EXPECT_TRUE(initial_xml()); });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(test::read_file(file), "<?xml version=\"1.0\"?>") << "many at once";
}
