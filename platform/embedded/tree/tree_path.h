// The path that a call of platform/config_tree.h is given.
#pragma once

#include <array>
#include <cstdarg>
#include <cstddef>

#include "platform/config_tree.h"
#include "platform/embedded/tree/xml/element_search.h"

namespace orvaneplatform {

class TreePath {
 public:
  // Takes the arguments of a call up to the null pointer that ends them.
  explicit TreePath(va_list arguments) {
    for (const char* name = va_arg(arguments, const char*); name != nullptr;
         name = va_arg(arguments, const char*)) {
      if (depth_ == names_.size()) {
        depth_ = 0;
        return;
      }
      names_[depth_++] = name;
    }
  }

  // Returns no names when there were more than kMaxTreeDepth.
  ElementNames names() const { return {names_.data(), depth_}; }

 private:
  std::array<const char*, kMaxTreeDepth> names_;
  std::size_t depth_ = 0;
};

}  // namespace orvaneplatform
