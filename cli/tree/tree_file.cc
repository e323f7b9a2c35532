#include "cli/tree/tree_file.h"

#include <charconv>
#include <cstdio>
#include <utility>

#include "cli/refusal.h"

namespace devcfg {

std::string system_device_tree() { return ORVANEIP_ROOT "/third_party/zelip/config/zelip.xml"; }

TreeFile::TreeFile(TCfgMode mode, const std::string& path)
    : path_(path), handle_(xmlcfg_open(mode, path.c_str())) {
  if (handle_ == nullptr) {
    throw Refusal("the tree " + path + " cannot be opened (--log tells why)");
  }
}

TreeFile::~TreeFile() {
  if (handle_ != nullptr) {
    xmlcfg_close(handle_, false);
  }
}

void TreeFile::save() {
  if (!xmlcfg_close(std::exchange(handle_, nullptr), true)) {
    throw Refusal("the tree " + path_ + " cannot be saved (--log tells why)");
  }
}

std::vector<std::string> node_names(const TreeFile& tree) {
  char list[4096];
  xmlcfg_get_str(tree.handle(), kNoValue, list, sizeof(list), "device", "device_node_list",
                 nullptr);
  std::vector<std::string> names;
  for (const std::string& name : split(list, ',')) {
    if (node_number(name)) {
      names.push_back(name);
    }
  }
  return names;
}

std::string node_name(int number) {
  char name[32];
  std::snprintf(name, sizeof(name), "device_%03d", number);
  return name;
}

std::optional<int> node_number(const std::string& name) {
  constexpr std::string_view kPrefix = "device_";
  const std::string_view digits =
      std::string_view(name).substr(name.starts_with(kPrefix) ? kPrefix.size() : 0);
  int number = 0;
  const auto [rest, error] = std::from_chars(digits.begin(), digits.end(), number);
  const bool whole = error == std::errc() && rest == digits.end() && number >= 0;
  return whole ? std::optional(number) : std::nullopt;
}

}  // namespace devcfg
