// Elements by the path of their names.
#pragma once

#include <pugixml.hpp>

#include <array>
#include <atomic>
#include <cstdarg>
#include <cstddef>
#include <mutex>
#include <span>
#include <string_view>
#include <vector>

namespace orvaneplatform {

// How many elements may be nested, in a file and in a path.
inline constexpr std::size_t kMaxDepth = 256;

// The arguments of a call up to the null pointer that ends them.
class TreePath {
 public:
  explicit TreePath(va_list arguments);

  // Empty when the path is too deep.
  std::span<const char* const> names() const { return {names_.data(), depth_}; }

 private:
  std::array<const char*, kMaxDepth> names_;
  std::size_t depth_ = 0;
};

// Finds elements below a top element; the first one of a name counts. Remembers the last one found
// on each level, since callers read many values below one element, and, in a tree that nobody
// changes, looks up the children of the top element in a list sorted by name after a few searches.
// Any number of threads may find at once, in a tree that none of them changes.
class PathFinder {
 public:
  // `fixed`: the tree is not changed for as long as the finder lives, and it has one top element.
  explicit PathFinder(bool fixed) : fixed_(fixed) {}

  struct Found {
    pugi::xml_node element;  // the deepest one on the path that exists, or none
    std::size_t depth;       // the number of names that led to it
  };
  Found find(pugi::xml_node top, std::span<const char* const> names) const;

  // To be called before an element is removed.
  void forget();

 private:
  pugi::xml_node find_child(pugi::xml_node parent, const char* name, std::size_t level) const;
  pugi::xml_node find_below_top(pugi::xml_node top, const char* name) const;
  void sort_children(pugi::xml_node top) const;

  struct NamedChild {
    std::string_view name;
    pugi::xml_node element;
  };
  static constexpr int kSearchesBeforeSorting = 4;
  const bool fixed_;
  mutable std::atomic<int> searches_ = 0;
  mutable std::once_flag sorting_;
  mutable std::atomic<std::size_t> next_ = 0;  // behind the last one found in `sorted_`
  mutable std::vector<NamedChild> sorted_;     // the first of each name

  static constexpr std::size_t kRememberedLevels = 8;
  mutable std::array<std::atomic<pugi::xml_node_struct*>, kRememberedLevels> last_ = {};
};

}  // namespace orvaneplatform
