#include "platform/embedded/tree/xml/element_search.h"

#include <algorithm>
#include <cstring>

namespace orvaneplatform {
namespace {

using pugi::xml_node;

constexpr std::size_t kExpectedChildren = 129;  // of a full device tree: the nodes and their list

xml_node first_child_named(xml_node parent, const char* name) {
  xml_node node = parent.child(name);
  while (node && node.type() != pugi::node_element) {  // an instruction has a name as well
    node = node.next_sibling(name);
  }
  return node;
}

bool is_named(xml_node element, const char* name) {
  return element && std::strcmp(element.name(), name) == 0;
}

FoundElement descend(FoundElement found, ElementNames names) {
  while (found.depth < names.size()) {
    const xml_node child = first_child_named(found.element, names[found.depth]);
    if (!child) {
      break;
    }
    found = {child, found.depth + 1};
  }
  return found;
}

xml_node whole_path(const FoundElement& found, ElementNames names) {
  return found.depth == names.size() ? found.element : xml_node();
}

}  // namespace

FoundElement find_deepest(xml_node top, ElementNames names) {
  return !names.empty() && is_named(top, names[0]) ? descend({top, 1}, names) : FoundElement{{}, 0};
}

xml_node find_element(xml_node top, ElementNames names) {
  return whole_path(find_deepest(top, names), names);
}

ElementIndex::ElementIndex(xml_node top) : top_(top) {
  children_.reserve(kExpectedChildren);
  for (const xml_node child : top.children()) {
    if (child.type() == pugi::node_element) {
      children_.push_back({child.name(), child});
    }
  }
  std::ranges::stable_sort(children_, {}, &Child::name);
}

xml_node ElementIndex::find(ElementNames names) const {
  if (names.size() < 2 || !is_named(top_, names[0])) {
    return find_element(top_, names);
  }
  const xml_node child = find_child(names[1]);
  return child ? whole_path(descend({child, 2}, names), names) : xml_node();
}

xml_node ElementIndex::find_child(const char* name) const {
  const xml_node last(last_.load(std::memory_order_relaxed));
  if (is_named(last, name)) {
    return last;
  }
  const auto found = std::ranges::lower_bound(children_, std::string_view(name), {}, &Child::name);
  if (found == children_.end() || found->name != name) {
    return {};
  }
  last_.store(found->element.internal_object(), std::memory_order_relaxed);
  return found->element;
}

}  // namespace orvaneplatform
