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

// Most names differ in their first byte.
bool equal(const char* one, const char* other) {
  return *one == *other && std::strcmp(one, other) == 0;
}

// The memory, for as long as the object lives; unless another thread has it.
class Turn {
 public:
  explicit Turn(std::atomic<bool>& is_used)
      : is_used_(is_used), is_ours_(!is_used.exchange(true, std::memory_order_acquire)) {}
  ~Turn() {
    if (is_ours_) {
      is_used_.store(false, std::memory_order_release);
    }
  }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

  bool is_ours() const { return is_ours_; }

 private:
  std::atomic<bool>& is_used_;
  const bool is_ours_;
};

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
  if (names.empty() || !top) {
    return {{}, 0};
  }
  const Turn turn(memory_is_used_);
  if (turn.is_ours()) {
    return find_with_memory(top, names);
  }
  return equal(top.name(), names[0]) ? find_from({top, 1}, names) : Found{{}, 0};
}

PathFinder::Found PathFinder::find_from(Found found, std::span<const char* const> names) {
  while (found.depth < names.size()) {
    const xml_node child = first_element(found.element, names[found.depth]);
    if (!child) {
      break;
    }
    found = {child, found.depth + 1};
  }
  return found;
}

PathFinder::Found PathFinder::find_with_memory(xml_node top,
                                               std::span<const char* const> names) const {
  Found found = memory_.follow(names);
  if (found.depth == 0) {
    if (!equal(top.name(), names[0])) {
      return found;
    }
    found = {top, 1};
    memory_.note(found);
  }
  while (found.depth < names.size()) {
    const char* name = names[found.depth];
    const xml_node child = fixed_ && found.depth == 1 ? memory_.find_below_top(top, name)
                                                      : first_element(found.element, name);
    if (!child) {
      break;
    }
    found = {child, found.depth + 1};
    memory_.note(found);
  }
  return found;
}

// As far as the names are those of the last search.
PathFinder::Found PathFinder::Memory::follow(std::span<const char* const> names) {
  const std::size_t most = std::min(depth, names.size());
  std::size_t common = 0;
  while (common < most && equal(path[common].name, names[common])) {
    ++common;
  }
  depth = common;
  return {common > 0 ? xml_node(path[common - 1].element) : xml_node(), common};
}

void PathFinder::Memory::note(const Found& found) {
  if (found.depth <= kRememberedLevels) {
    path[found.depth - 1] = {found.element.internal_object(), found.element.name()};
    depth = found.depth;
  }
}

xml_node PathFinder::Memory::find_below_top(xml_node top, const char* name) {
  if (searches < kSearchesBeforeSorting) {
    ++searches;
    return first_element(top, name);
  }
  if (sorted.empty()) {
    sort_children(top);
  }
  if (next >= sorted.size() || sorted[next].name != name) {
    const auto at = std::lower_bound(
        sorted.begin(), sorted.end(), std::string_view(name),
        [](const NamedChild& child, std::string_view wanted) { return child.name < wanted; });
    if (at == sorted.end() || at->name != name) {
      return {};
    }
    next = static_cast<std::size_t>(at - sorted.begin());
  }
  return sorted[next++].element;
}

// The nodes of most files are in order, and are asked for in order.
void PathFinder::Memory::sort_children(xml_node top) {
  std::vector<NamedChild> children;
  children.reserve(kExpectedChildren);
  for (const xml_node child : top.children()) {
    if (child.type() == pugi::node_element) {
      children.push_back({child.name(), child});
    }
  }
  const auto is_before = [](const NamedChild& one, const NamedChild& other) {
    return one.name < other.name;
  };
  const auto is_not_before = [&](const NamedChild& one, const NamedChild& other) {
    return !is_before(one, other);
  };
  if (std::adjacent_find(children.begin(), children.end(), is_not_before) != children.end()) {
    std::stable_sort(children.begin(), children.end(), is_before);
    children.erase(std::unique(children.begin(), children.end(), is_not_before), children.end());
  }
  sorted = std::move(children);
}

}  // namespace orvaneplatform
