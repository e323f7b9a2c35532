// The bytes that a changed configuration tree is saved as.
#pragma once

#include <pugixml.hpp>

#include <string>
#include <string_view>

#include "platform/embedded/tree/xml/document.h"

namespace orvaneplatform {

// Where a tree differs from the file that it was read from: in a run of children of the top
// element, or anywhere.
class ChangedPart {
 public:
  // A change below `element`, which was there before the change, or of its value. A change of the
  // top element itself, which a child that is added or removed is too, can be anywhere: from then
  // on no child is remembered.
  void add(pugi::xml_node top, pugi::xml_node element);

  bool is_empty() const { return !everything_ && !first_; }

  // None when the change is anywhere.
  pugi::xml_node first() const { return first_; }
  pugi::xml_node last() const { return last_; }

 private:
  pugi::xml_node first_;
  pugi::xml_node last_;
  bool everything_ = false;
};

// `before` and `after` are the bytes of the file as it was read that stand before and behind the
// changed part.
struct TreeText {
  std::string_view before;
  std::string changed;
  std::string_view after;

  std::size_t size() const { return before.size() + changed.size() + after.size(); }

  // True when it is `original`, the file as it was read.
  bool equals(std::string_view original) const;
};

// The document as the bytes of its file; `tree.original` has to outlive them. Quotation marks in
// attributes of the changed part become references.
TreeText tree_text(TreeFile& tree, const ChangedPart& part);

// One element with everything under it, as bytes.
std::string element_text(pugi::xml_node element);

}  // namespace orvaneplatform
