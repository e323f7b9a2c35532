// Control characters in untrusted texts, which could forge log lines or control a terminal.
#pragma once

#include <string>
#include <string_view>

namespace base {

enum class LineFeeds { kEscape, kKeep };

// Returns the text with each byte of a control character written as \xNN: U+0000 to U+001F, U+007F
// and, in UTF-8, U+0080 to U+009F, which some terminals execute.
std::string escape_control_characters(std::string_view text, LineFeeds line_feeds);

}  // namespace base
