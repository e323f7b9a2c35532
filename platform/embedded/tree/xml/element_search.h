// Elements by the path of their names; the first element of a name counts.
#pragma once

#include <pugixml.hpp>

#include <atomic>
#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace orvaneplatform {

// The names on a path, the top element's first.
using ElementNames = std::span<const char* const>;

struct FoundElement {
  pugi::xml_node element;  // null when no name matched
  std::size_t depth;       // the number of names that led to it
};

// Returns the deepest element on the path from `top`, which may be null.
FoundElement find_deepest(pugi::xml_node top, ElementNames names);

// Returns the element at the path, or a null node.
pugi::xml_node find_element(pugi::xml_node top, ElementNames names);

// Finds elements of a tree that does not change. Its lookup cache contains the children of the top
// element, of which a device tree has one for each device, and the one that was found last, since
// callers read many values below one element. Any number of threads may use it at once.
class ElementIndex {
 public:
  explicit ElementIndex(pugi::xml_node top);

  // As find_element, from `top`.
  pugi::xml_node find(ElementNames names) const;

 private:
  struct Child {
    std::string_view name;
    pugi::xml_node element;
  };

  pugi::xml_node find_child(const char* name) const;

  pugi::xml_node top_;
  std::vector<Child> children_;  // by name, then by position
  mutable std::atomic<pugi::xml_node_struct*> last_ = nullptr;
};

}  // namespace orvaneplatform
