#include "platform/embedded/tree/xml/value_encoding.h"

#include <algorithm>
#include <cstdint>

#include "platform/embedded/tree/xml/characters.h"

namespace orvaneplatform {
namespace {

constexpr std::string_view kDigits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::string encode_base64(std::string_view bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  while (!bytes.empty()) {
    const std::size_t count = std::min<std::size_t>(bytes.size(), 3);
    std::uint32_t group = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      group = group << 8 | (i < count ? static_cast<unsigned char>(bytes[i]) : 0U);
    }
    for (std::size_t i = 0; i < 4; ++i) {
      text += i <= count ? kDigits[group >> (18 - 6 * i) & 63] : '=';
    }
    bytes.remove_prefix(count);
  }
  return text;
}

void append_escaped(char character, std::string& text) {
  switch (character) {
    case '&':
      text += "&amp;";
      break;
    case '<':
      text += "&lt;";
      break;
    case '>':
      text += "&gt;";
      break;
    case '\r':
      text += "&#13;";
      break;
    default:
      text += character;
  }
}

void append_references(std::string_view whitespace, std::string& text) {
  for (const char character : whitespace) {
    text += "&#" + std::to_string(static_cast<int>(character)) + ';';
  }
}

std::string escape(std::string_view value) {
  const std::size_t first = std::min(value.find_first_not_of(kXmlWhitespace), value.size());
  const std::size_t end = std::max(value.find_last_not_of(kXmlWhitespace) + 1, first);
  std::string text;
  text.reserve(value.size());
  append_references(value.substr(0, first), text);
  for (const char character : value.substr(first, end - first)) {
    append_escaped(character, text);
  }
  append_references(value.substr(end), text);
  return text;
}

}  // namespace

EncodedValue encode_value(std::string_view value) {
  if (find_invalid_character(value) != std::string_view::npos) {
    return {encode_base64(value), true};
  }
  return {escape(value), false};
}

std::optional<std::string> decode_base64(std::string_view text) {
  std::string bytes;
  std::uint32_t group = 0;
  std::size_t digits = 0;
  std::size_t padding = 0;
  for (const char character : text) {
    if (std::string_view(kXmlWhitespace).find(character) != std::string_view::npos) {
      continue;
    }
    const std::size_t digit = kDigits.find(character);
    padding += character == '=' ? 1 : 0;
    if ((digit == std::string_view::npos && character != '=') ||
        (digit != std::string_view::npos && padding > 0)) {
      return std::nullopt;
    }
    group = group << 6 | static_cast<std::uint32_t>(digit == std::string_view::npos ? 0 : digit);
    if (++digits % 4 == 0) {
      bytes +=
          {static_cast<char>(group >> 16), static_cast<char>(group >> 8), static_cast<char>(group)};
    }
  }
  if (digits % 4 != 0 || padding > 2) {
    return std::nullopt;
  }
  bytes.erase(bytes.size() - padding);
  return bytes;
}

}  // namespace orvaneplatform
