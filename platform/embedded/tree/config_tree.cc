// The exported functions of the configuration tree: C arguments become paths and values, and back;
// failures become results and log lines.
#include "platform/config_tree.h"

#include <strings.h>

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <new>

#include "base/failure.h"
#include "platform/embedded/tree/tree_handle.h"
#include "platform/embedded/tree/tree_path.h"
#include "platform/embedded/tree/xml/element_value.h"
#include "platform/log_sinks.h"

namespace {

using orvaneplatform::Tree;
using orvaneplatform::TreeCopy;
using orvaneplatform::TreeHandle;
using orvaneplatform::TreePath;
using pugi::xml_node;

// Returns the pointer that a program is given.
void* pointer_to(Tree* tree) { return tree; }

// Returns what a program's pointer points to; null for null and for a tree of the other kind.
template <typename Kind>
Kind* tree_at(void* pointer) {
  Tree* tree = static_cast<Tree*>(pointer);
  return tree != nullptr && tree->kind() == Kind::kKind ? static_cast<Kind*>(tree) : nullptr;
}

// Returns the element at the path, or a null node.
template <typename Kind>
xml_node find_in(void* pointer, const TreePath& path) {
  const Kind* tree = tree_at<Kind>(pointer);
  return tree != nullptr ? tree->find(path.names()) : xml_node();
}

bool log_failed_save(const TreeHandle& tree, const char* reason) {
  orvane_log_debug("[cfgtree] saving %s failed: %s", tree.path().c_str(), reason);
  return false;
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
  // Every value is terminated.
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
  if (path == nullptr) {
    return nullptr;
  }
  try {
    return pointer_to(TreeHandle::open(path, mode == kCfgChange ? kCfgChange : kCfgRead).release());
  } catch (const base::Failure& failure) {
    orvane_log_debug("[cfgtree] %s is not opened: %s", path, failure.reason());
    return nullptr;
  }
}

bool xmlcfg_close(void* handle, bool save) {
  const std::unique_ptr<TreeHandle> tree(tree_at<TreeHandle>(handle));
  if (tree == nullptr || !save) {
    return true;
  }
  try {
    tree->save();
    return true;
  } catch (const base::Failure& failure) {
    return log_failed_save(*tree, failure.reason());
  } catch (const std::bad_alloc&) {
    return log_failed_save(*tree, "memory is exhausted");
  }
}

bool xmlcfg_get_str(void* handle, const char* default_value, char* buffer, int size_bytes, ...) {
  va_list arguments;
  va_start(arguments, size_bytes);
  const TreePath path(arguments);
  va_end(arguments);
  return copy_value(find_in<TreeHandle>(handle, path), default_value, buffer, size_bytes);
}

int xmlcfg_get_int(void* handle, int default_value, ...) {
  va_list arguments;
  va_start(arguments, default_value);
  const TreePath path(arguments);
  va_end(arguments);
  return int_value(find_in<TreeHandle>(handle, path), default_value);
}

// va_start requires a type that default promotion does not change; the compilers use only the
// parameter's position.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wvarargs"
bool xmlcfg_get_bool(void* handle, bool default_value, ...) {
  va_list arguments;
  va_start(arguments, default_value);
  const TreePath path(arguments);
  va_end(arguments);
  return bool_value(find_in<TreeHandle>(handle, path), default_value);
}
#pragma GCC diagnostic pop

bool xmlcfg_set_str(void* handle, const char* value, ...) {
  va_list arguments;
  va_start(arguments, value);
  const TreePath path(arguments);
  va_end(arguments);
  TreeHandle* tree = tree_at<TreeHandle>(handle);
  return tree != nullptr && value != nullptr && tree->store(path.names(), value);
}

bool xmlcfg_remove(void* handle, ...) {
  va_list arguments;
  va_start(arguments, handle);
  const TreePath path(arguments);
  va_end(arguments);
  TreeHandle* tree = tree_at<TreeHandle>(handle);
  return tree != nullptr && tree->remove(path.names());
}

void** xmlcfg_export_xmltree(void* handle, ...) {
  va_list arguments;
  va_start(arguments, handle);
  const TreePath path(arguments);
  va_end(arguments);
  const TreeHandle* tree = tree_at<TreeHandle>(handle);
  return tree != nullptr ? static_cast<void**>(pointer_to(tree->copy(path.names()).release()))
                         : nullptr;
}

bool xmltree_get_str(void** tree, const char* default_value, char* buffer, int size_bytes, ...) {
  va_list arguments;
  va_start(arguments, size_bytes);
  const TreePath path(arguments);
  va_end(arguments);
  return copy_value(find_in<TreeCopy>(tree, path), default_value, buffer, size_bytes);
}

int xmltree_get_int(void** tree, int default_value, ...) {
  va_list arguments;
  va_start(arguments, default_value);
  const TreePath path(arguments);
  va_end(arguments);
  return int_value(find_in<TreeCopy>(tree, path), default_value);
}

void xmltree_destroy(void** tree) { delete tree_at<TreeCopy>(tree); }
