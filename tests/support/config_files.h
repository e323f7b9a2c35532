// Configuration files of a test.
#pragma once

#include "tests/support/config_tree.h"
#include "tests/support/temp_directory.h"

namespace test {

// When set, a call of the platform fails for which it returns true.
inline bool (*call_fails)(const std::string& call) = nullptr;

// A directory to which the library's fixed paths lead while it exists: the test program's own
// xmlcfg_open comes before the platform's. Without such a directory no fixed path can be opened.
struct ConfigFiles : TempDirectory {
  ConfigFiles();
  ~ConfigFiles();

  std::string device_tree() const { return file("zelip.xml"); }
  std::string builtin_list() const { return file("zelip_builtin.xml"); }
  std::string rule_file() const { return file("kfilter.xml"); }
};

// Replaces the file by one with the values "path=value;path=value", each path below `top`, its
// names joined by "/". Returns the file's path.
std::string write_tree(const std::string& file, const std::string& top, const std::string& values);

}  // namespace test
