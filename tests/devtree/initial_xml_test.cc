#include <algorithm>
#include <filesystem>
#include <thread>

#include "tests/support/library.h"

// One test: its steps share the one fixed path.
TEST(InitialXml, CreatesTheFileOnceAndNeverEmptiesIt) {
  const std::string directory = ORVANEIP_ROOT "/third_party/zelip/config",
                    file = directory + "/zelip.xml";
  std::filesystem::remove_all(ORVANEIP_ROOT);
  EXPECT_FALSE(initial_xml()) << "no directory";
  const std::vector<std::string> failed = {
      "[libdevcfg] check_file_exist, File " + file + " not exist",
      "[libdevcfg] initial_xml, File open error: " + file};
  EXPECT_EQ(test::take_product_log(), failed);
  std::filesystem::create_directories(directory);
  std::filesystem::create_symlink("elsewhere.xml", file);
  EXPECT_TRUE(initial_xml()) << "a link that leads nowhere yet";
  EXPECT_EQ(test::read_file(directory + "/elsewhere.xml"), "<?xml version=\"1.0\"?>");
  test::write_file(file, "<device/>");
  EXPECT_TRUE(initial_xml());
  EXPECT_EQ(test::read_file(file), "<device/>");
  EXPECT_EQ(test::take_log().size(), 1U) << "the missing file only";

  std::filesystem::remove(file);
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([] { EXPECT_TRUE(initial_xml()); });
  }
  std::for_each(threads.begin(), threads.end(), [](std::thread& thread) { thread.join(); });
  EXPECT_EQ(test::read_file(file), "<?xml version=\"1.0\"?>") << "many at once";
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory), {}), 2)
      << "no file but this one and the one that the link led to";
}
