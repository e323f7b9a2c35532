// How a value of any bytes is written as the text of an XML element.
//
// As text, so that every XML reader gets the same bytes: &, < and > as &amp;, &lt; and &gt;; a
// carriage return as &#13;, since readers turn a bare one into a line feed; whitespace at the start
// and the end of the value as &#32; &#9; &#10;, since there it may be taken for layout. A value
// that XML cannot carry (control characters, bytes that are not UTF-8) is written in Base64, and
// its element is marked by the attribute kEncodingAttribute="kBase64". Files contain both: they
// must not change.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvaneplatform {

inline constexpr char kEncodingAttribute[] = "encoding";
inline constexpr char kBase64[] = "base64";

struct EncodedValue {
  std::string text;  // as in the file
  bool base64;
};
EncodedValue encode_value(std::string_view value);

// Returns the bytes; whitespace is skipped. Nothing when the text is not Base64.
std::optional<std::string> decode_base64(std::string_view text);

}  // namespace orvaneplatform
