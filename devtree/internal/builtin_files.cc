#include "devtree/internal/builtin_files.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <string_view>

#include "devtree/builtin_devices.h"

namespace orvaneip {
namespace {

std::string entry_name(int entry) { return "builtin_" + std::to_string(entry); }

std::string read_key(void* tree, const std::string& node) {
  char key[kDeviceTextBytes];
  read_value(tree, kNoValue, key, kDeviceTop, node.c_str(), "qid");
  return key;
}

bool reads_as_builtin(void* tree, const std::string& node) {
  return xmlcfg_get_bool(tree, false, kDeviceTop, node.c_str(), "builtin", nullptr);
}

// Returns how many bytes at the end of the text begin a character of UTF-8 that the end cuts off.
std::size_t incomplete_tail(std::string_view text) {
  for (std::size_t tail = 1; tail <= std::min<std::size_t>(text.size(), 3); ++tail) {
    const auto byte = static_cast<unsigned char>(text[text.size() - tail]);
    if (byte < 0x80 || byte >= 0xC0) {
      const std::size_t length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
      return length > tail ? tail : 0;
    }
  }
  return 0;
}

}  // namespace

int BuiltinList::entry_count() const {
  return xmlcfg_get_int(handle(), 0, kDeviceTop, "no", nullptr);
}

std::string BuiltinList::key(int entry) const { return read_key(handle(), entry_name(entry)); }

bool BuiltinList::marks_builtin(int entry) const {
  return reads_as_builtin(handle(), entry_name(entry));
}

std::string BuiltinList::value(int entry, const char* name) const {
  char buffer[kBuiltinValueBytes];
  read_value(handle(), kNoValue, buffer, kDeviceTop, entry_name(entry).c_str(), name);
  std::string value = buffer;
  if (value.size() == sizeof(buffer) - 1) {
    value.resize(value.size() - incomplete_tail(value));
  }
  return value;
}

std::string DeviceTree::node_list() const {
  std::string list(kNodeListBytes, '\0');
  for (;;) {
    xmlcfg_get_str(handle(), kNoValue, list.data(), static_cast<int>(list.size()), kDeviceTop,
                   kNodeListName, nullptr);
    const std::size_t length = std::strlen(list.c_str());
    if (length + 1 < list.size() || list.size() > INT_MAX / 2) {
      list.resize(length);
      return list;
    }
    list.assign(2 * list.size(), '\0');
  }
}

std::string DeviceTree::key(const std::string& node) const { return read_key(handle(), node); }

bool DeviceTree::is_builtin(const std::string& node) const {
  return reads_as_builtin(handle(), node);
}

}  // namespace orvaneip
