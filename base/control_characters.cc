#include "base/control_characters.h"

namespace base {
namespace {

// Returns the size in bytes of the control character at the start of `text`; 0 when it is another
// character.
std::size_t control_size(std::string_view text, LineFeeds line_feeds) {
  const auto byte = static_cast<unsigned char>(text[0]);
  if (byte == 0xC2 && text.size() > 1 && (static_cast<unsigned char>(text[1]) & 0xE0) == 0x80) {
    return 2;
  }
  const bool is_control = byte < 0x20 || byte == 0x7F;
  return is_control && (byte != '\n' || line_feeds == LineFeeds::kEscape) ? 1 : 0;
}

void append_escaped(std::string_view bytes, std::string& escaped) {
  constexpr char kDigits[] = "0123456789abcdef";
  for (const char each : bytes) {
    const auto byte = static_cast<unsigned char>(each);
    escaped.append({'\\', 'x', kDigits[byte >> 4], kDigits[byte & 0x0F]});
  }
}

}  // namespace

std::string escape_control_characters(std::string_view text, LineFeeds line_feeds) {
  std::string escaped;
  escaped.reserve(text.size());
  while (!text.empty()) {
    if (const std::size_t size = control_size(text, line_feeds); size > 0) {
      append_escaped(text.substr(0, size), escaped);
      text.remove_prefix(size);
    } else {
      escaped += text.front();
      text.remove_prefix(1);
    }
  }
  return escaped;
}

}  // namespace base
