#include "platform/embedded/tree/xml/element_value.h"

#include <algorithm>
#include <cstring>

#include "base/strings.h"
#include "platform/embedded/tree/xml/characters.h"
#include "platform/embedded/tree/xml/layout.h"
#include "platform/embedded/tree/xml/out_of_memory.h"
#include "platform/embedded/tree/xml/references.h"
#include "platform/embedded/tree/xml/value_encoding.h"

namespace orvaneplatform {
namespace {

using pugi::xml_node;

bool is_marked_base64(xml_node element) {
  return element.first_attribute() &&
         std::strcmp(element.attribute(kEncodingAttribute).value(), kBase64) == 0;
}

// Returns the element's text when it is in one piece and the element contains nothing else;
// otherwise null. A tree that is only read keeps the first piece in the element itself.
const char* sole_text(xml_node element) {
  const xml_node child = element.first_child();
  if (!child) {
    return element.value();
  }
  const bool sole = child.type() == pugi::node_pcdata && !child.next_sibling();
  return sole && *element.value() == '\0' ? child.value() : nullptr;
}

bool is_text(xml_node node) {
  return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
}

template <typename Kind>
bool contains_only(xml_node element, Kind is_kind) {
  return std::all_of(element.begin(), element.end(), is_kind);
}

std::string_view without_layout(std::string_view text) { return base::trim(text, kXmlWhitespace); }

std::string joined_text(xml_node element) {
  const bool has_layout =
      !contains_only(element, [](xml_node child) { return child.type() == pugi::node_pcdata; });
  const auto piece = [has_layout](const char* text) {
    return has_layout ? without_layout(text) : std::string_view(text);
  };
  std::string value;
  append_decoded(piece(element.value()), value);
  for (const xml_node child : element.children()) {
    if (child.type() == pugi::node_pcdata) {
      append_decoded(piece(child.value()), value);
    } else if (child.type() == pugi::node_cdata) {
      append_with_line_ends(child.value(), value);
    }
  }
  return value;
}

// Removes a piece of the value. `keep_layout`: keeps the whitespace at its end, which lays out what
// follows.
void erase_text(xml_node element, xml_node piece, bool keep_layout) {
  const std::string_view text = piece.value();
  const std::string rest(text.substr(text.find_last_not_of(kXmlWhitespace) + 1));
  if (keep_layout && piece.type() == pugi::node_pcdata && !rest.empty()) {
    throw_if_out_of_memory(piece.set_value(rest.c_str()));
  } else {
    element.remove_child(piece);
  }
}

void erase_value(xml_node element) {
  const bool keep_layout = !contains_only(element, is_text);
  for (xml_node child = element.first_child(); child;) {
    const xml_node next = child.next_sibling();
    if (is_text(child)) {
      erase_text(element, child, keep_layout);
    }
    child = next;
  }
}

void write_value(xml_node element, std::string_view value) {
  erase_value(element);
  const EncodedValue encoded = encode_value(value);
  if (!encoded.text.empty()) {
    throw_if_out_of_memory(
        element.prepend_child(pugi::node_pcdata).set_value(encoded.text.c_str()));
  }
  if (encoded.base64) {
    element.remove_attribute(kEncodingAttribute);
    pugi::xml_attribute encoding = element.append_attribute(kEncodingAttribute);
    throw_if_out_of_memory(encoding.set_name(kEncodingAttribute) && encoding.set_value(kBase64));
  } else if (is_marked_base64(element)) {
    element.remove_attribute(kEncodingAttribute);
  }
}

std::string copy_value(xml_node element) {
  std::string decoded;
  return std::string(element_value(element, decoded));
}

// Returns true for whitespace that nobody has stored: it lays out an element without children.
bool contains_only_layout(xml_node element) {
  const xml_node child = element.first_child();
  return is_layout(child) && !child.next_sibling();
}

}  // namespace

std::string_view element_value(xml_node element, std::string& decoded) {
  const bool base64 = is_marked_base64(element);
  if (const char* text = sole_text(element); text != nullptr) {
    if (!base64 && text[std::strcspn(text, "&\r")] == '\0') {
      return text;
    }
    decoded.clear();
    append_decoded(text, decoded);
  } else {
    decoded = joined_text(element);
  }
  if (base64) {
    decoded = decode_base64(decoded).value_or(decoded);
  }
  return decoded;
}

bool store_value(xml_node element, std::string_view value) {
  std::string decoded;
  if (element_value(element, decoded) == value && !contains_only_layout(element)) {
    return false;
  }
  write_value(element, value);
  return true;
}

xml_node add_element(xml_node parent, const char* name) {
  if (contains_only(parent, is_text) && !contains_only_layout(parent)) {
    // Whitespace around the text would be taken for layout from now on.
    const std::string value = copy_value(parent);
    if (without_layout(value) != value) {
      write_value(parent, value);
    }
  }
  return append_element(parent, name);
}

void drop_element(xml_node element) {
  const xml_node parent = element.parent();
  const std::string before = copy_value(parent);
  remove_element(element);
  if (parent.type() == pugi::node_element) {
    store_value(parent, before);
  }
}

}  // namespace orvaneplatform
