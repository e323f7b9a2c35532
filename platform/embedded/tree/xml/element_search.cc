#include "platform/embedded/tree/xml/element_search.h"

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
  Memory* const memory = turn.is_ours() ? &memory_ : nullptr;
  Found found = memory != nullptr ? memory->follow(names) : Found{{}, 0};
  if (found.depth == 0) {
    if (!equal(top.name(), names[0])) {
      return found;
    }
    found = {top, 1};
    note(found, memory);
  }
  while (found.depth < names.size()) {
    const xml_node child = find_child(found, names[found.depth], memory);
    if (!child) {
      break;
    }
    found = {child, found.depth + 1};
    note(found, memory);
  }
  return found;
}

xml_node PathFinder::find_child(const Found& parent, const char* name, Memory* memory) const {
  return memory != nullptr && fixed_ && parent.depth == 1
             ? memory->find_below_top(parent.element, name)
             : first_element(parent.element, name);
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

// The levels are noted one after the other.
void PathFinder::note(const Found& found, Memory* memory) {
  if (memory != nullptr && found.depth <= kRememberedLevels) {
    memory->path[found.depth - 1] = {found.element.internal_object(), found.element.name()};
    memory->depth = found.depth;
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
