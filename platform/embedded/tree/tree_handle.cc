#include "platform/embedded/tree/tree_handle.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>

#include "base/atomic_file.h"
#include "base/failure.h"
#include "platform/embedded/tree/xml/characters.h"
#include "platform/embedded/tree/xml/document_writer.h"
#include "platform/embedded/tree/xml/element_value.h"
#include "platform/embedded/tree/xml/layout.h"
#include "platform/embedded/tree/xml/out_of_memory.h"
#include "platform/log_sinks.h"

namespace orvaneplatform {
namespace {

using pugi::xml_node;

// Returns the path without symbolic links: the file itself is locked and replaced.
std::string resolve_links(const char* path) {
  const std::unique_ptr<char, decltype(&std::free)> real(realpath(path, nullptr), std::free);
  if (real == nullptr) {
    base::throw_system_failure(path, errno);
  }
  return real.get();
}

base::FileLock take_lock(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) {
    base::throw_system_failure(path, errno);
  }
  require_regular_file(path, status);
  return base::FileLock::take(path, status, kTreeLockWaitMs);
}

}  // namespace

TreeHandle::TreeHandle(std::string path, TCfgMode mode, std::optional<base::FileLock> lock)
    : Tree(kKind),
      path_(std::move(path)),
      mode_(mode),
      lock_(std::move(lock)),
      document_(read_document(path_, mode)) {
  if (mode == kCfgRead) {
    index_.emplace(top());
  }
}

std::unique_ptr<TreeHandle> TreeHandle::open(const char* path, TCfgMode mode) {
  std::string file = path;
  std::optional<base::FileLock> lock;
  if (mode == kCfgChange) {
    file = resolve_links(path);
    lock.emplace(take_lock(file));
  }
  return std::unique_ptr<TreeHandle>(new TreeHandle(std::move(file), mode, std::move(lock)));
}

xml_node TreeHandle::find(ElementNames names) const {
  return index_ ? index_->find(names) : find_element(top(), names);
}

bool TreeHandle::store(ElementNames names, std::string_view value) {
  if (mode_ != kCfgChange) {
    return refuse("the tree is open to be read", names);
  }
  if (names.empty()) {
    return refuse("the path is empty or too long", names);
  }
  if (top() && std::strcmp(top().name(), names[0]) != 0) {
    return refuse("the file has another top element", names);
  }
  const FoundElement found = find_deepest(top(), names);
  const ElementNames missing = names.subspan(found.depth);
  if (!std::all_of(missing.begin(), missing.end(), is_plain_name)) {
    return refuse("a name in the path is not allowed", names);
  }
  is_half_changed_ = true;
  const bool value_changed = store_value(create(found, missing), value);
  is_changed_ = is_changed_ || value_changed || !missing.empty();
  is_half_changed_ = false;
  return true;
}

xml_node TreeHandle::create(const FoundElement& found, ElementNames missing) {
  xml_node element = found.element;
  for (const char* name : missing) {
    element = element ? add_element(element, name) : append_top_element(document_->tree, name);
  }
  return element;
}

bool TreeHandle::remove(ElementNames names) {
  const xml_node element = find(names);
  if (!element || mode_ != kCfgChange) {
    return element ? refuse("the tree is open to be read", names) : false;
  }
  is_half_changed_ = is_changed_ = true;
  drop_element(element);
  is_half_changed_ = false;
  return true;
}

std::unique_ptr<TreeCopy> TreeHandle::copy(ElementNames names) const {
  const xml_node element = find(names);
  if (!element) {
    return nullptr;
  }
  if (mode_ == kCfgRead) {
    return std::make_unique<TreeCopy>(document_, element);  // nobody changes it any more
  }
  auto copied = std::make_shared<XmlDocument>();
  const xml_node copied_top = copied->tree.append_copy(element);
  // pugixml leaves out what it has no memory for.
  throw_if_out_of_memory(element_text(copied_top) == element_text(element));
  return std::make_unique<TreeCopy>(std::move(copied), copied_top);
}

void TreeHandle::save() {
  throw_if_out_of_memory(!is_half_changed_);
  if (!is_changed_) {
    return;
  }
  const std::string bytes = document_bytes(*document_);
  if (bytes.size() > kMaxTreeFileBytes) {
    throw base::Failure(path_, "it would be larger than " + max_file_size());
  }
  if (bytes != document_->original) {
    base::replace_file(path_, bytes, document_->status);
  }
}

bool TreeHandle::refuse(const char* reason, ElementNames names) const {
  orvane_log_debug("[cfgtree] %s, nothing is changed at %s of %s", reason,
                   names.empty() ? "a path" : names.back(), path_.c_str());
  return false;
}

}  // namespace orvaneplatform
