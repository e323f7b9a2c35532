#include "platform/embedded/tree/xml/characters.h"

#include <algorithm>
#include <iterator>

#include "base/utf8.h"

namespace orvaneplatform {
namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// NameStartChar and, without those, NameChar; in order.
constexpr Range kNameStart[] = {
    {':', ':'},       {'A', 'Z'},       {'_', '_'},       {'a', 'z'},
    {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},
    {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},
    {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF},
};
constexpr Range kNameFurther[] = {
    {'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040},
};

template <std::size_t kSize>
bool in_ranges(const Range (&ranges)[kSize], char32_t character) {
  return std::any_of(std::begin(ranges), std::end(ranges), [character](const Range& range) {
    return character >= range.first && character <= range.last;
  });
}

}  // namespace

bool is_xml_character(char32_t character) {
  constexpr Range kAllowed[] = {
      {0x9, 0xA}, {0xD, 0xD}, {0x20, 0xD7FF}, {0xE000, 0xFFFD}, {0x10000, 0x10FFFF}};
  return in_ranges(kAllowed, character);
}

std::size_t find_invalid_character(std::string_view bytes) {
  for (std::size_t at = 0; at < bytes.size();) {
    const auto [character, size_bytes] = base::decode_utf8(bytes.substr(at));
    if (!is_xml_character(character)) {
      return at;
    }
    at += size_bytes;
  }
  return std::string_view::npos;
}

bool is_name(std::string_view name) {
  bool is_first = true;
  for (std::string_view rest = name; !rest.empty(); is_first = false) {
    const auto [character, size_bytes] = base::decode_utf8(rest);
    if (!in_ranges(kNameStart, character) && (is_first || !in_ranges(kNameFurther, character))) {
      return false;
    }
    rest.remove_prefix(size_bytes);
  }
  return !name.empty();
}

bool is_plain_name(std::string_view name) {
  return is_name(name) && name.find(':') == std::string_view::npos;
}

}  // namespace orvaneplatform
