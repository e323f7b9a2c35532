#include "platform/embedded/tree/tree_handle.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>
#include <system_error>

#include "platform/embedded/tree/xml/layout.h"
#include "platform/embedded/tree/tree_save.h"
#include "platform/embedded/tree/xml/element_value.h"
#include "platform/embedded/tree/xml/characters.h"
#include "platform/log_sinks.h"

namespace orvaneplatform {
namespace {

using pugi::xml_node;

std::string lock_failure(int error) {
  return error == ETIMEDOUT ? "another writer holds its lock for longer than the wait"
                            : "its lock file: " + std::generic_category().message(error);
}

// The file itself, where `path` leads to it through links: it is the file that is locked and
// replaced. Nothing and a log line when there is none.
std::optional<std::string> file_behind(const char* path, struct stat& status) {
  const std::unique_ptr<char, decltype(&std::free)> real(realpath(path, nullptr), std::free);
  if (real == nullptr || stat(real.get(), &status) != 0) {
    report_not_opened(path, std::generic_category().message(errno).c_str());
    return std::nullopt;
  }
  if (!S_ISREG(status.st_mode)) {
    report_not_opened(path, "it is not a file");
    return std::nullopt;
  }
  return real.get();
}

}  // namespace

xml_node TreeCopy::find(Names names) const {
  const PathFinder::Found found = finder_.find(top_, names);
  return found.depth == names.size() ? found.element : xml_node();
}

TreeHandle::TreeHandle(std::string path, TreeUse use, std::optional<base::FileLock> lock,
                       std::shared_ptr<TreeFile> tree)
    : path_(std::move(path)),
      use_(use),
      lock_(std::move(lock)),
      tree_(std::move(tree)),
      finder_(use == TreeUse::kRead) {}

std::unique_ptr<TreeHandle> TreeHandle::open(const char* path, TreeUse use) {
  if (use == TreeUse::kChange) {
    return open_to_change(path);
  }
  return with_tree(path, TreeUse::kRead, std::nullopt);
}

std::unique_ptr<TreeHandle> TreeHandle::open_to_change(const char* path) {
  struct stat status {};
  const auto file = file_behind(path, status);
  if (!file) {
    return nullptr;
  }
  auto lock = base::FileLock::take(*file, status);
  if (!lock) {
    report_not_opened(path, lock_failure(errno).c_str());
    return nullptr;
  }
  return with_tree(*file, TreeUse::kChange, std::move(lock));
}

std::unique_ptr<TreeHandle> TreeHandle::with_tree(std::string path, TreeUse use,
                                                  std::optional<base::FileLock> lock) {
  auto tree = read_tree(path, use);
  if (tree == nullptr) {
    return nullptr;
  }
  return std::unique_ptr<TreeHandle>(
      new TreeHandle(std::move(path), use, std::move(lock), std::move(tree)));
}

xml_node TreeHandle::find(Names names) const {
  const auto found = finder_.find(tree_->document.document_element(), names);
  return found.depth == names.size() ? found.element : xml_node();
}

bool TreeHandle::store(Names names, std::string_view value) {
  if (use_ != TreeUse::kChange) {
    return refuse("the tree is open to be read", names);
  }
  if (names.empty()) {
    return refuse("the path is empty or too long", names);
  }
  const xml_node top = tree_->document.document_element();
  if (top && std::strcmp(top.name(), names[0]) != 0) {
    return refuse("the file has another top element", names);
  }
  const PathFinder::Found found = finder_.find(top, names);
  if (!std::all_of(names.begin() + static_cast<std::ptrdiff_t>(found.depth), names.end(),
                   is_plain_name)) {
    return refuse("a name in the path is not allowed", names);
  }
  whole_ = false;
  change(found, names, value);
  whole_ = true;
  return true;
}

void TreeHandle::change(PathFinder::Found found, Names names, std::string_view value) {
  const bool is_there = found.depth == names.size();
  const bool changed = store_value(is_there ? found.element : create(found, names), value);
  if (changed || !is_there) {
    note_change(found.element);
  }
}

// `element`, which was there before, is changed or something below it.
void TreeHandle::note_change(xml_node element) {
  changed_.add(tree_->document.document_element(), element);
}

xml_node TreeHandle::create(PathFinder::Found found, Names names) {
  xml_node element = found.element;
  for (const char* name : names.subspan(found.depth)) {
    element = element ? add_element(element, name) : append_top_element(tree_->document, name);
  }
  return element;
}

bool TreeHandle::remove(Names names) {
  const xml_node element = find(names);
  if (!element || use_ != TreeUse::kChange) {
    return element ? refuse("the tree is open to be read", names) : false;
  }
  finder_.forget();
  whole_ = false;
  note_change(element.parent());
  drop_element(element);
  whole_ = true;
  return true;
}

std::unique_ptr<TreeCopy> TreeHandle::copy(Names names) const {
  const xml_node element = find(names);
  if (!element) {
    return nullptr;
  }
  if (use_ == TreeUse::kRead) {
    return std::make_unique<TreeCopy>(tree_, element);  // nobody changes it any more
  }
  auto copied = std::make_shared<TreeFile>();
  const xml_node top = copied->document.append_copy(element);
  // pugixml leaves out what it has no memory for.
  needed(element_text(top) == element_text(element));
  return std::make_unique<TreeCopy>(std::move(copied), top);
}

bool TreeHandle::save() {
  try {
    if (whole_) {
      return changed_.is_empty() || write_changes();
    }
  } catch (const std::bad_alloc&) {
    // Told below.
  }
  orvane_log_debug("[cfgtree] saving %s failed: memory is exhausted", path_.c_str());
  return false;
}

bool TreeHandle::write_changes() {
  const TreeText text = tree_text(*tree_, changed_);
  if (text.size() > kMaxFileBytes) {
    orvane_log_debug("[cfgtree] saving %s failed: it would be larger than 64 MiB", path_.c_str());
    return false;
  }
  return text.equals(tree_->original) || replace_file(path_, text, tree_->status);
}

bool TreeHandle::refuse(const char* what, Names names) const {
  orvane_log_debug("[cfgtree] %s, nothing is changed at %s of %s", what,
                   names.empty() ? "a path" : names.back(), path_.c_str());
  return false;
}

}  // namespace orvaneplatform
