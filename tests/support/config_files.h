// Configuration files of a test.
#pragma once

#include "tests/support/config_tree.h"
#include "tests/support/temp_directory.h"

namespace test {

// When it is set, a call of the platform for which it gives true fails.
inline bool (*call_fails)(const std::string& call) = nullptr;

// A folder that the library's fixed paths lead to while it exists: the test program's own
// xmlcfg_open comes before the platform's. Without such a folder no fixed path can be opened.
struct ConfigFiles : TempDirectory {
  ConfigFiles();
  ~ConfigFiles();

  std::string device_tree() const { return file("zelip.xml"); }
  std::string builtin_list() const { return file("zelip_builtin.xml"); }
  std::string rule_file() const { return file("kfilter.xml"); }
};

// Replaces the file by one that holds the values "path=value;path=value", each path below `top`,
// its names joined by "/". Returns the file's path.
std::string write_tree(const std::string& file, const std::string& top, const std::string& values);

}  // namespace test
