// Configuration trees with paths made at run time.
#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "platform/config_tree.h"

namespace test {

using Path = std::vector<std::string>;  // at most 6 names

// A tree that is closed, its changes saved, when it goes out of scope.
class Tree {
  static auto on(const Path& path, auto call) {
    std::array<const char*, 6> n = {};
    for (std::size_t i = 0; i < path.size(); ++i) {
      n.at(i) = path[i].c_str();
    }
    return call(n[0], n[1], n[2], n[3], n[4], n[5], nullptr);
  }

 public:
  Tree(TCfgMode mode, const std::string& file) : handle_(xmlcfg_open(mode, file.c_str())) {}
  ~Tree() { close(); }
  Tree(const Tree&) = delete;
  Tree& operator=(const Tree&) = delete;

  void* handle() const { return handle_; }
  bool is_open() const { return handle_ != nullptr; }
  bool close(bool save = true) { return xmlcfg_close(std::exchange(handle_, nullptr), save); }

  // Returns "(none)" when there is no value.
  std::string value(const Path& path) const {
    std::string text(8192, '\0');
    on(path, [&](auto... n) { return xmlcfg_get_str(handle_, "(none)", &text[0], 8192, n...); });
    return text.c_str();
  }
  bool store(const Path& path, const std::string& value) {
    return on(path, [&](auto... n) { return xmlcfg_set_str(handle_, value.c_str(), n...); });
  }
  bool remove(const Path& path) {
    return on(path, [&](auto... n) { return xmlcfg_remove(handle_, n...); });
  }

 private:
  void* handle_;
};

}  // namespace test
