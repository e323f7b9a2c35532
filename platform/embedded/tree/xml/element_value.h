// The values of a configuration tree's elements. The tree contains the text of its file unchanged,
// references and line ends included: what is not changed is saved as it was read.
//
// The value of an element is its text. Where it contains more than plain text (elements, comments,
// CDATA sections), whitespace around each piece of the text is layout and no part of the value,
// except where it is written as references or in a CDATA section.
// An element without text has the empty value.
#pragma once

#include <pugixml.hpp>

#include <string>
#include <string_view>

namespace orvaneplatform {

// Returns the value, terminated. It points into the tree, or to `decoded` where the text has to be
// decoded first; most values need no memory.
std::string_view element_value(pugi::xml_node element, std::string& decoded);

// Replaces the value and keeps what else the element contains. Returns false, and changes nothing,
// when it has this value already.
bool store_value(pugi::xml_node element, std::string_view value);

// Adds an element as the last one below `parent`, whose value does not change.
pugi::xml_node add_element(pugi::xml_node parent, const char* name);

// Removes the element with everything under it. The value of its parent does not change.
void drop_element(pugi::xml_node element);

}  // namespace orvaneplatform
