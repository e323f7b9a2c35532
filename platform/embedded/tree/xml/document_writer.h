// The bytes of a document.
#pragma once

#include <pugixml.hpp>

#include <string>

#include "platform/embedded/tree/xml/document.h"

namespace orvaneplatform {

// Returns the bytes that a document read for kCfgChange is saved as. Its attributes are changed:
// quotation marks in them become references.
std::string document_bytes(XmlDocument& document);

// Returns the bytes of one element with everything under it.
std::string element_text(pugi::xml_node element);

}  // namespace orvaneplatform
