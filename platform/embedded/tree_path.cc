#include "platform/embedded/tree_path.h"

#include <algorithm>
#include <cstring>

namespace orvaneplatform {
namespace {

using pugi::xml_node;

constexpr std::size_t kExpectedChildren = 128;  // a full device tree

xml_node first_element(xml_node parent, const char* name) {
  xml_node node = parent.child(name);
  while (node && node.type() != pugi::node_element) {  // an instruction has a name as well
    node = node.next_sibling(name);
  }
  return node;
}

}  // namespace

TreePath::TreePath(va_list arguments) {
  for (const char* name = va_arg(arguments, const char*); name != nullptr;
       name = va_arg(arguments, const char*)) {
    if (depth_ == names_.size()) {
      depth_ = 0;
      return;
    }
    names_[depth_++] = name;
  }
}

PathFinder::Found PathFinder::find(xml_node top, std::span<const char* const> names) const {
  if (names.empty() || !top || std::strcmp(top.name(), names[0]) != 0) {
    return {{}, 0};
  }
  Found found{top, 1};
  while (found.depth < names.size()) {
    const xml_node child = find_child(found.element, names[found.depth], found.depth);
    if (!child) {
      break;
    }
    found = {child, found.depth + 1};
  }
  return found;
}

void PathFinder::forget() {
  for (auto& last : last_) {
    last.store(nullptr, std::memory_order_relaxed);
  }
}

xml_node PathFinder::find_child(xml_node parent, const char* name, std::size_t level) const {
  if (level >= kRememberedLevels) {
    return first_element(parent, name);
  }
  const xml_node last(last_[level].load(std::memory_order_relaxed));
  if (last.parent() == parent && std::strcmp(last.name(), name) == 0) {
    return last;
  }
  const bool below_top = fixed_ && level == 1;
  const xml_node found = below_top ? find_below_top(parent, name) : first_element(parent, name);
  if (found) {
    last_[level].store(found.internal_object(), std::memory_order_relaxed);
  }
  return found;
}

xml_node PathFinder::find_below_top(xml_node top, const char* name) const {
  if (searches_.load(std::memory_order_relaxed) < kSearchesBeforeSorting) {
    searches_.fetch_add(1, std::memory_order_relaxed);
    return first_element(top, name);
  }
  std::call_once(sorting_, [this, top] { sort_children(top); });
  std::size_t place = next_.load(std::memory_order_relaxed);
  if (place >= sorted_.size() || sorted_[place].name != name) {
    const auto at = std::lower_bound(
        sorted_.begin(), sorted_.end(), std::string_view(name),
        [](const NamedChild& child, std::string_view wanted) { return child.name < wanted; });
    if (at == sorted_.end() || at->name != name) {
      return {};
    }
    place = static_cast<std::size_t>(at - sorted_.begin());
  }
  next_.store(place + 1, std::memory_order_relaxed);
  return sorted_[place].element;
}

// The nodes of most files are in order, and are asked for in order.
void PathFinder::sort_children(xml_node top) const {
  sorted_.reserve(kExpectedChildren);
  for (const xml_node child : top.children()) {
    if (child.type() == pugi::node_element) {
      sorted_.push_back({child.name(), child});
    }
  }
  const auto is_before = [](const NamedChild& one, const NamedChild& other) {
    return one.name < other.name;
  };
  const auto is_not_before = [&](const NamedChild& one, const NamedChild& other) {
    return !is_before(one, other);
  };
  if (std::adjacent_find(sorted_.begin(), sorted_.end(), is_not_before) != sorted_.end()) {
    std::stable_sort(sorted_.begin(), sorted_.end(), is_before);
    sorted_.erase(std::unique(sorted_.begin(), sorted_.end(), is_not_before), sorted_.end());
  }
}

}  // namespace orvaneplatform
