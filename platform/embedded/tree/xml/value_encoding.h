// How a value of any bytes stands as the text of an XML element.
//
// As text, so that every XML reader gets the same bytes: &, < and > as &amp;, &lt; and &gt;; a
// carriage return as &#13;, since readers turn a bare one into a line feed; blanks at the value's
// beginning and end as &#32; &#9; &#10;, since there they may be taken for layout. A value that XML
// cannot carry (control characters, bytes that are not UTF-8) stands in Base64, and its element is
// marked by the attribute kEncodingAttribute="kBase64". Both are stored in files: they must not
// change.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvaneplatform {

inline constexpr char kEncodingAttribute[] = "encoding";
inline constexpr char kBase64[] = "base64";

// The characters that lay a file out: blank, tab, carriage return, line feed.
inline constexpr char kBlanks[] = " \t\r\n";

struct EncodedValue {
  std::string text;  // as it stands in the file
  bool base64;
};
EncodedValue encode_value(std::string_view value);

// The bytes; blanks in between are skipped. Nothing when the text is not Base64.
std::optional<std::string> decode_base64(std::string_view text);

}  // namespace orvaneplatform
