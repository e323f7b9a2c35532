// References to characters (&lt; &#10; &#xA; ...) and line ends in the text of an element.
#pragma once

#include <string>
#include <string_view>

namespace orvaneplatform {

// Appends the text with references replaced by their characters, and the line ends CR LF and CR by
// LF. A reference that XML does not allow is kept as it is.
void append_decoded(std::string_view text, std::string& value);

// Appends the text with line ends replaced alone: in a CDATA section an ampersand has no meaning.
void append_with_line_ends(std::string_view text, std::string& value);

// Returns true when every ampersand begins a reference to a character that XML allows.
bool references_are_valid(std::string_view text);

}  // namespace orvaneplatform
