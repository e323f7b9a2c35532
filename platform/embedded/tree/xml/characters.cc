#include "platform/embedded/tree/xml/characters.h"

#include <boost/locale/utf.hpp>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>

namespace orvaneplatform {
namespace {

using Utf8 = boost::locale::utf::utf_traits<char>;

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

bool is_xml_character(char32_t character) {
  constexpr Range kAllowed[] = {
      {0x9, 0xA}, {0xD, 0xD}, {0x20, 0xD7FF}, {0xE000, 0xFFFD}, {0x10000, 0x10FFFF}};
  return in_ranges(kAllowed, character);
}

// What stands between '&' and ';'. Nothing when XML does not define it without a document type.
std::optional<char32_t> referenced_character(std::string_view name) {
  constexpr struct {
    std::string_view name;
    char32_t character;
  } kNamed[] = {{"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}};
  for (const auto& named : kNamed) {
    if (name == named.name) {
      return named.character;
    }
  }
  if (!name.starts_with('#')) {
    return std::nullopt;
  }
  const bool hexadecimal = name.starts_with("#x");
  name.remove_prefix(hexadecimal ? 2 : 1);
  unsigned int code = 0;
  const char* end = name.data() + name.size();
  const auto read = std::from_chars(name.data(), end, code, hexadecimal ? 16 : 10);
  const bool whole = read.ec == std::errc() && read.ptr == end;
  return whole && is_xml_character(code) ? std::optional<char32_t>(code) : std::nullopt;
}

struct Reference {
  std::size_t length;
  std::optional<char32_t> character;
};

// `text` begins with an ampersand.
Reference read_reference(std::string_view text) {
  const std::size_t end = text.find_first_of(";&<", 1);
  if (end == std::string_view::npos || text[end] != ';') {
    return {1, std::nullopt};
  }
  return {end + 1, referenced_character(text.substr(1, end - 1))};
}

void append_reference(std::string_view& text, std::string& value) {
  const Reference reference = read_reference(text);
  if (reference.character) {
    Utf8::encode(*reference.character, std::back_inserter(value));
  } else {
    value += text.substr(0, reference.length);
  }
  text.remove_prefix(reference.length);
}

void append_line_end(std::string_view& text, std::string& value) {
  value += '\n';
  text.remove_prefix(text.starts_with("\r\n") ? 2 : 1);
}

void append_until(const char* special, std::string_view text, std::string& value) {
  while (!text.empty()) {
    const std::size_t plain = std::min(text.find_first_of(special), text.size());
    value += text.substr(0, plain);
    text.remove_prefix(plain);
    if (text.starts_with('&')) {
      append_reference(text, value);
    } else if (!text.empty()) {
      append_line_end(text, value);
    }
  }
}

// How many bytes are summarised at once: few enough for a byte to count their tags, which have two
// bytes at least. Text with more of them, as "<<<", is not well-formed: the parser refuses it.
constexpr std::size_t kBlockBytes = 448;

// A byte for each answer. Noted without branches: the compiler makes vector code of it.
struct BlockSummary {
  unsigned char control = 0;
  unsigned char any = 0;
  unsigned char ampersand = 0;
  unsigned char quote = 0;
  unsigned char markup = 0;
  unsigned char starts = 0;  // start tags
  unsigned char ends = 0;    // end tags

  [[gnu::always_inline]] void note(unsigned char code, char previous) {
    const bool tag = previous == '<';
    control |= (code < 0x20) & (code != '\t') & (code != '\n') & (code != '\r');
    any |= code;
    ampersand |= code == '&';
    quote |= (code == '"') | (code == '\'');
    markup |= tag & ((code == '!') | (code == '?'));
    starts = static_cast<unsigned char>(starts + (tag & (code != '/')));
    ends = static_cast<unsigned char>(ends + (tag & (code == '/')));
  }
};

// Of the bytes from `at` to `end`.
[[gnu::always_inline]] inline BlockSummary summarise_block(std::string_view bytes, std::size_t at,
                                                           std::size_t end) {
  BlockSummary block;
  if (at == 0) {
    block.note(static_cast<unsigned char>(bytes[at++]), '\0');
  }
  for (; at < end; ++at) {
    block.note(static_cast<unsigned char>(bytes[at]), bytes[at - 1]);
  }
  return block;
}

[[gnu::always_inline]] inline ByteSummary summarise_blocks(std::string_view bytes) {
  ByteSummary summary;
  int depth = 0;
  for (std::size_t at = 0; at < bytes.size(); at += kBlockBytes) {
    const BlockSummary block = summarise_block(bytes, at, std::min(at + kBlockBytes, bytes.size()));
    summary.control |= block.control != 0;
    summary.non_ascii |= (block.any & 0x80) != 0;
    summary.ampersand |= block.ampersand != 0;
    summary.quote |= block.quote != 0;
    summary.markup |= block.markup != 0;
    summary.depth_bound = std::max(summary.depth_bound, depth + block.starts);
    depth += block.starts - block.ends;
  }
  return summary;
}

#ifdef __x86_64__
// The same, compiled for vectors of twice the size.
[[gnu::target("avx2")]] ByteSummary summarise_wide(std::string_view bytes) {
  return summarise_blocks(bytes);
}
#endif

template <typename Rest>
bool is_name_of(std::string_view name, Rest allowed_further) {
  const char* at = name.data();
  const char* end = at + name.size();
  for (bool first = true; at != end; first = false) {
    const char32_t character = Utf8::decode(at, end);
    if (!in_ranges(kNameStart, character) && (first || !in_ranges(kNameFurther, character))) {
      return false;
    }
    if (!allowed_further(character)) {
      return false;
    }
  }
  return !name.empty();
}

}  // namespace

ByteSummary summarise(std::string_view bytes) {
#ifdef __x86_64__
  if (__builtin_cpu_supports("avx2")) {
    return summarise_wide(bytes);
  }
#endif
  return summarise_blocks(bytes);
}

std::size_t find_invalid_character(std::string_view bytes) {
  const char* at = bytes.data();
  const char* end = at + bytes.size();
  while (at != end) {
    const char* start = at;
    if (!is_xml_character(Utf8::decode(at, end))) {
      return static_cast<std::size_t>(start - bytes.data());
    }
  }
  return std::string_view::npos;
}

bool is_plain_name(std::string_view name) {
  return is_name_of(name, [](char32_t character) { return character != ':'; });
}

bool is_name(std::string_view name) {
  return is_name_of(name, [](char32_t) { return true; });
}

void append_decoded(std::string_view text, std::string& value) { append_until("&\r", text, value); }

void append_with_line_ends(std::string_view text, std::string& value) {
  append_until("\r", text, value);
}

bool references_are_valid(std::string_view text) {
  for (std::size_t at = text.find('&'); at != std::string_view::npos; at = text.find('&', at + 1)) {
    if (!read_reference(text.substr(at)).character) {
      return false;
    }
  }
  return true;
}

}  // namespace orvaneplatform
