#include "tests/support/config_tree.h"

#include <array>
#include <utility>

namespace test {
namespace {

std::array<const char*, 7> names_of(const Path& path) {
  std::array<const char*, 7> names = {};
  for (std::size_t i = 0; i < path.size(); ++i) {
    names.at(i) = path[i].c_str();
  }
  return names;
}

}  // namespace

bool Tree::close(bool save) { return xmlcfg_close(std::exchange(handle_, nullptr), save); }

std::string Tree::value(const Path& path) const {
  const auto n = names_of(path);
  std::string buffer(8192, '\0');
  xmlcfg_get_str(handle_, "(none)", buffer.data(), static_cast<int>(buffer.size()), n[0], n[1],
                 n[2], n[3], n[4], n[5], nullptr);
  return buffer.c_str();
}

bool Tree::store(const Path& path, const std::string& value) {
  const auto n = names_of(path);
  return xmlcfg_set_str(handle_, value.c_str(), n[0], n[1], n[2], n[3], n[4], n[5], nullptr);
}

bool Tree::remove(const Path& path) {
  const auto n = names_of(path);
  return xmlcfg_remove(handle_, n[0], n[1], n[2], n[3], n[4], n[5], nullptr);
}

}  // namespace test
