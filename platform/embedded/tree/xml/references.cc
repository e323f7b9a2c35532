#include "platform/embedded/tree/xml/references.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "base/utf8.h"
#include "platform/embedded/tree/xml/characters.h"

namespace orvaneplatform {
namespace {

// Returns the character of the reference &NAME;. Nothing when XML does not define it without a
// document type.
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
    base::append_utf8(*reference.character, value);
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

}  // namespace

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
