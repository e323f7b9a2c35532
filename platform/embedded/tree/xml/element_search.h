// Elements by the path of their names.
#pragma once

#include <pugixml.hpp>

#include <array>
#include <atomic>
#include <cstdarg>
#include <cstddef>
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

// Finds elements below one top element; the first one of a name counts. Remembers the path of the
// last search, since callers read many values below one element, and, in a tree that nobody
// changes, looks up the children of the top element in a list sorted by name after a few searches.
// Any number of threads may find at once, in a tree that none of them changes: one of them has the
// memory, the others search without.
class PathFinder {
 public:
  // `fixed`: the tree is not changed for as long as the finder lives.
  explicit PathFinder(bool fixed) : fixed_(fixed) {}

  struct Found {
    pugi::xml_node element;  // the deepest one on the path that exists, or none
    std::size_t depth;       // the number of names that led to it
  };
  Found find(pugi::xml_node top, std::span<const char* const> names) const;

  // To be called before an element is removed.
  void forget() { memory_.depth = 0; }

 private:
  static constexpr std::size_t kRememberedLevels = 8;
  static constexpr int kSearchesBeforeSorting = 4;

  struct Step {
    pugi::xml_node_struct* element;
    const char* name;
  };
  struct NamedChild {
    std::string_view name;
    pugi::xml_node element;
  };
  struct Memory {
    Found follow(std::span<const char* const> names);
    pugi::xml_node find_below_top(pugi::xml_node top, const char* name);
    void sort_children(pugi::xml_node top);

    std::array<Step, kRememberedLevels> path;  // of the last search, from the top element on
    std::size_t depth = 0;                     // of `path`
    int searches = 0;                          // below the top element
    std::vector<NamedChild> sorted;  // the children of the top element, first of each name
    std::size_t next = 0;            // behind the last one found in `sorted`
  };

  // `memory` is null when another thread has it.
  pugi::xml_node find_child(const Found& parent, const char* name, Memory* memory) const;
  static void note(const Found& found, Memory* memory);

  const bool fixed_;
  mutable std::atomic<bool> memory_is_used_ = false;
  mutable Memory memory_;
};

}  // namespace orvaneplatform
