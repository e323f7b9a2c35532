// Decodes and encodes characters in UTF-8.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace base {

struct Utf8Character {
  char32_t character;  // kNotUtf8 for a byte that does not begin a character
  std::size_t size_bytes;
};

inline constexpr char32_t kNotUtf8 = 0xFFFFFFFF;

// Decodes the character at the start of `bytes`, which must not be empty. Overlong forms,
// surrogates and characters above U+10FFFF are not UTF-8; `size_bytes` is 1 then.
constexpr Utf8Character decode_utf8(std::string_view bytes) {
  const auto lead = static_cast<unsigned char>(bytes[0]);
  if (lead < 0x80) {
    return {lead, 1};
  }
  const std::size_t size = lead < 0xC2   ? 0
                           : lead < 0xE0 ? 2
                           : lead < 0xF0 ? 3
                           : lead < 0xF5 ? 4
                                         : 0;
  if (size == 0 || bytes.size() < size) {
    return {kNotUtf8, 1};
  }
  char32_t character = lead & (0x7Fu >> size);
  for (std::size_t i = 1; i < size; ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    if ((byte & 0xC0) != 0x80) {
      return {kNotUtf8, 1};
    }
    character = character << 6 | (byte & 0x3Fu);
  }
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool is_surrogate = character >= 0xD800 && character <= 0xDFFF;
  return character < kSmallest[size] || is_surrogate || character > 0x10FFFF
             ? Utf8Character{kNotUtf8, 1}
             : Utf8Character{character, size};
}

// Appends the character, which must not be above U+10FFFF.
inline void append_utf8(char32_t character, std::string& text) {
  if (character < 0x80) {
    text += static_cast<char>(character);
    return;
  }
  const std::size_t further = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
  text += static_cast<char>((0xFF00u >> (further + 1) & 0xFFu) | character >> (6 * further));
  for (std::size_t i = further; i-- > 0;) {
    text += static_cast<char>(0x80u | (character >> (6 * i) & 0x3Fu));
  }
}

}  // namespace base
