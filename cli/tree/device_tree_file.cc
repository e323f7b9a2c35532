#include "cli/tree/device_tree_file.h"

#include <charconv>
#include <cstdio>
#include <filesystem>
#include <utility>

#include "base/fixed_paths.h"
#include "cli/command_error.h"

namespace devcfg {
namespace {

std::string why_not_opened(const std::string& path) {
  std::error_code error;
  if (path == base::kDeviceTreePath && !std::filesystem::exists(path, error) && !error) {
    return "there is no device tree yet: `devcfg tree init` creates " + path;
  }
  return "the tree " + path + " cannot be opened (--log shows why)";
}

}  // namespace

DeviceTreeFile::DeviceTreeFile(TCfgMode mode, const std::string& path)
    : path_(path), handle_(xmlcfg_open(mode, path.c_str())) {
  if (handle_ == nullptr) {
    throw CommandError(why_not_opened(path));
  }
}

DeviceTreeFile::~DeviceTreeFile() {
  if (handle_ != nullptr) {
    xmlcfg_close(handle_, false);
  }
}

void DeviceTreeFile::save() {
  if (!xmlcfg_close(std::exchange(handle_, nullptr), true)) {
    throw CommandError("the tree " + path_ + " cannot be saved (--log shows why)");
  }
}

std::vector<std::string> node_names(const DeviceTreeFile& tree) {
  std::vector<std::string> names = listed_names(tree, "device", "device_node_list");
  std::erase_if(names, [](const std::string& name) { return name.empty() || name == kNoValue; });
  return names;
}

std::string node_name(int number) {
  char name[32];
  std::snprintf(name, sizeof(name), "device_%03d", number);
  return name;
}

std::optional<int> node_number(const std::string& name) {
  const std::size_t mark = name.find('_');
  if (mark == std::string::npos) {
    return std::nullopt;
  }
  int number = 0;
  const char* const end = name.data() + name.size();
  const std::errc error = std::from_chars(name.data() + mark + 1, end, number).ec;
  return error == std::errc() && number >= 0 ? std::optional(number) : std::nullopt;
}

}  // namespace devcfg
