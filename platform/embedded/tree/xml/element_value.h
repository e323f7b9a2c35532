// The values of a configuration tree's elements. The tree holds the text of its file as it stands
// there, references and line ends included: what is not changed is saved as it was read.
//
// The value of an element is its text. Where it holds more than plain text (elements, comments,
// CDATA sections), blanks around each piece of the text are layout and do not count, but for those
// written as references or in a CDATA section.
// An element without text has the empty value.
#pragma once

#include <pugixml.hpp>

#include <string>
#include <string_view>

namespace orvaneplatform {

// The value when it stands in the tree as it is; otherwise `decoded` is set to it. A terminator
// follows. No memory is taken for most values.
std::string_view element_value(pugi::xml_node element, std::string& decoded);

// Replaces the value; what else the element holds is kept. False when it was this value before, and
// nothing is changed.
bool store_value(pugi::xml_node element, std::string_view value);

// Adds an element as the last one below `parent`. The value of `parent` stays.
pugi::xml_node add_element(pugi::xml_node parent, const char* name);

// Removes the element with everything under it. The value of its parent stays.
void drop_element(pugi::xml_node element);

}  // namespace orvaneplatform
