// The characters and names that XML 1.0 (fifth edition) allows.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvaneplatform {

// What the bytes of a file hold, found in one fast pass, so that slower checks can be left out.
struct ByteSummary {
  bool control = false;    // a control character that XML does not allow
  bool non_ascii = false;  // a byte of 0x80 or above
  bool ampersand = false;
  bool quote = false;   // '"' or "'"
  bool markup = false;  // "<!" or "<?"
  int depth_bound = 0;  // elements are not nested deeper; more by those that have no end tag
};
ByteSummary summarise(std::string_view bytes);

// The offset of the first byte that does not belong to a character of UTF-8 that XML allows, or
// npos.
std::size_t find_invalid_character(std::string_view bytes);

// An element name without a colon: a prefix would need a declaration, or readers that know
// namespaces refuse the whole file.
bool is_plain_name(std::string_view name);

// A name as it may stand in a file; colons are allowed.
bool is_name(std::string_view name);

// Replaces references (&lt; &#10; &#xA; ...) by their characters, and the line ends CR LF and CR by
// LF. A reference that XML does not allow is kept as it is.
void append_decoded(std::string_view text, std::string& value);

// As append_decoded, for text in which an ampersand has no meaning.
void append_with_line_ends(std::string_view text, std::string& value);

// True when every ampersand begins a reference to a character that XML allows.
bool references_are_valid(std::string_view text);

}  // namespace orvaneplatform
