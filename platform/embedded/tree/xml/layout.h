// Adds and removes elements so that a file stays in the layout that its author gave it: an element
// on a line of its own where its neighbours are, in the same line where they are not; two blanks a
// level where the file shows no other indentation.
#pragma once

#include <pugixml.hpp>

#include <new>

namespace orvaneplatform {

// pugixml tells with false that it has no memory for a change, which is half made then.
inline void needed(bool made) {
  if (!made) {
    throw std::bad_alloc();
  }
}

// True when `node` is text that only lays the file out.
bool is_layout(pugi::xml_node node);

// Adds an element as the last one below `parent`, which is an element.
pugi::xml_node append_element(pugi::xml_node parent, const char* name);

// Adds the top element to a document that has none, and the XML declaration to an empty one.
pugi::xml_node append_top_element(pugi::xml_node document, const char* name);

// Removes the element with everything under it, and its line when nothing else stands there.
void remove_element(pugi::xml_node element);

}  // namespace orvaneplatform
