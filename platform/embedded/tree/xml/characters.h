// The characters and names that XML 1.0 (fifth edition) allows.
#pragma once

#include <cstddef>
#include <string_view>

namespace orvaneplatform {

// Space, tab, carriage return and line feed: they lay a file out.
inline constexpr char kXmlWhitespace[] = " \t\r\n";

bool is_xml_character(char32_t character);

// Returns the offset of the first byte that does not belong to a character of UTF-8 that XML
// allows, or npos.
std::size_t find_invalid_character(std::string_view bytes);

// Returns true for a name that XML allows.
bool is_name(std::string_view name);

// Returns true for a name without a colon: a prefix would need a declaration, or readers that know
// namespaces refuse the whole file.
bool is_plain_name(std::string_view name);

}  // namespace orvaneplatform
