// Configuration trees with paths made at run time.
#pragma once

#include <string>
#include <vector>

#include "platform/config_tree.h"

namespace test {

using Path = std::vector<std::string>;  // at most 6 names

// A tree that is closed, its changes saved, when it goes out of scope.
class Tree {
 public:
  Tree(TCfgMode mode, const std::string& file) : handle_(xmlcfg_open(mode, file.c_str())) {}
  ~Tree() { close(); }
  Tree(const Tree&) = delete;
  Tree& operator=(const Tree&) = delete;

  void* handle() const { return handle_; }
  bool is_open() const { return handle_ != nullptr; }
  bool close(bool save = true);

  std::string value(const Path& path) const;  // "(none)" when there is none
  bool store(const Path& path, const std::string& value);
  bool remove(const Path& path);

 private:
  void* handle_;
};

}  // namespace test
