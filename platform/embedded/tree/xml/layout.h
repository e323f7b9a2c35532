// Adds and removes elements so that a file keeps the layout that its author gave it: an element is
// on its own line where its neighbours are, and on the same line where they are not; two spaces a
// level where the file shows no other indentation.
#pragma once

#include <pugixml.hpp>

namespace orvaneplatform {

// Returns true for text that only lays the file out: whitespace.
bool is_layout(pugi::xml_node node);

// Adds an element as the last one below `parent`, which is an element.
pugi::xml_node append_element(pugi::xml_node parent, const char* name);

// Adds the top element to a document without one, and the XML declaration to an empty document.
pugi::xml_node append_top_element(pugi::xml_node document, const char* name);

// Removes the element with everything under it, and its line when there is nothing else on it.
void remove_element(pugi::xml_node element);

}  // namespace orvaneplatform
