// The door of the configuration tree: C arguments become paths and values, and back.
#include "platform/config_tree.h"

#include <strings.h>

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "platform/embedded/tree/tree_handle.h"
#include "platform/embedded/tree/xml/element_value.h"

namespace {

using orvaneplatform::Names;
using orvaneplatform::TreeCopy;
using orvaneplatform::TreeHandle;
using orvaneplatform::TreePath;
using orvaneplatform::TreeUse;
using pugi::xml_node;

TreeHandle* handle_of(void* handle) { return static_cast<TreeHandle*>(handle); }
TreeCopy* copy_of(void** tree) { return reinterpret_cast<TreeCopy*>(tree); }

// The element at the path in a handle or a copy, of which null finds nothing.
template <typename Tree>
xml_node find_in(const Tree* tree, const TreePath& path) {
  return tree != nullptr ? tree->find(path.names()) : xml_node();
}

bool copy_value(xml_node element, const char* default_value, char* buffer, int size_bytes) {
  std::string decoded;
  std::string_view value = default_value != nullptr ? default_value : "";
  if (element) {
    value = orvaneplatform::element_value(element, decoded);
  }
  if (buffer != nullptr && size_bytes > 0) {
    const std::size_t length = std::min(value.size(), static_cast<std::size_t>(size_bytes) - 1);
    std::memcpy(buffer, value.data(), length);
    buffer[length] = '\0';
  }
  return !element.empty();
}

int int_value(xml_node element, int default_value) {
  std::string decoded;
  // A terminated text, as every value is.
  const char* value = element ? orvaneplatform::element_value(element, decoded).data() : "";
  char* end = nullptr;
  const long number = std::strtol(value, &end, 10);
  return end == value ? default_value
                      : static_cast<int>(std::clamp<long>(number, INT_MIN, INT_MAX));
}

bool bool_value(xml_node element, bool default_value) {
  constexpr const char* kWords[] = {"true", "false", "yes", "no", "on", "off", "1", "0"};
  std::string decoded;
  const std::string value(element ? orvaneplatform::element_value(element, decoded) : "");
  const auto found = std::find_if(std::begin(kWords), std::end(kWords), [&](const char* word) {
    return strcasecmp(value.c_str(), word) == 0;
  });
  return found == std::end(kWords) ? default_value : (found - std::begin(kWords)) % 2 == 0;
}

}  // namespace

void* xmlcfg_open(TCfgMode mode, const char* path) {
  const TreeUse use = mode == kCfgChange ? TreeUse::kChange : TreeUse::kRead;
  return path != nullptr ? TreeHandle::open(path, use).release() : nullptr;
}

bool xmlcfg_close(void* handle, bool save) {
  const std::unique_ptr<TreeHandle> tree(handle_of(handle));
  return tree == nullptr || !save || tree->save();
}

bool xmlcfg_get_str(void* handle, const char* default_value, char* buffer, int size_bytes, ...) {
  va_list arguments;
  va_start(arguments, size_bytes);
  const TreePath path(arguments);
  va_end(arguments);
  return copy_value(find_in(handle_of(handle), path), default_value, buffer, size_bytes);
}

int xmlcfg_get_int(void* handle, int default_value, ...) {
  va_list arguments;
  va_start(arguments, default_value);
  const TreePath path(arguments);
  va_end(arguments);
  return int_value(find_in(handle_of(handle), path), default_value);
}

// va_start wants a type that is passed unchanged; both compilers only look where it stands.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wvarargs"
bool xmlcfg_get_bool(void* handle, bool default_value, ...) {
  va_list arguments;
  va_start(arguments, default_value);
  const TreePath path(arguments);
  va_end(arguments);
  return bool_value(find_in(handle_of(handle), path), default_value);
}
#pragma GCC diagnostic pop

bool xmlcfg_set_str(void* handle, const char* value, ...) {
  va_list arguments;
  va_start(arguments, value);
  const TreePath path(arguments);
  va_end(arguments);
  return handle != nullptr && value != nullptr && handle_of(handle)->store(path.names(), value);
}

bool xmlcfg_remove(void* handle, ...) {
  va_list arguments;
  va_start(arguments, handle);
  const TreePath path(arguments);
  va_end(arguments);
  return handle != nullptr && handle_of(handle)->remove(path.names());
}

void** xmlcfg_export_xmltree(void* handle, ...) {
  va_list arguments;
  va_start(arguments, handle);
  const TreePath path(arguments);
  va_end(arguments);
  const TreeHandle* tree = handle_of(handle);
  return tree != nullptr ? reinterpret_cast<void**>(tree->copy(path.names()).release()) : nullptr;
}

bool xmltree_get_str(void** tree, const char* default_value, char* buffer, int size_bytes, ...) {
  va_list arguments;
  va_start(arguments, size_bytes);
  const TreePath path(arguments);
  va_end(arguments);
  return copy_value(find_in(copy_of(tree), path), default_value, buffer, size_bytes);
}

int xmltree_get_int(void** tree, int default_value, ...) {
  va_list arguments;
  va_start(arguments, default_value);
  const TreePath path(arguments);
  va_end(arguments);
  return int_value(find_in(copy_of(tree), path), default_value);
}

void xmltree_destroy(void** tree) { delete copy_of(tree); }
