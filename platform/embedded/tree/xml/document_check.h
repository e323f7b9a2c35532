// What XML requires and the parser does not check: a file that other readers would refuse, or that
// could not be saved without a loss, is not opened.
#pragma once

#include <pugixml.hpp>

#include <cstddef>
#include <string>
#include <string_view>

namespace orvaneplatform {

// What the bytes of a file contain, found before they are parsed in place.
struct FileTraits {
  bool declaration_first = false;  // they begin with an XML declaration
  bool cdata_end = false;          // "]]>"
  bool control = false;            // a control character that XML does not allow
  bool non_ascii = false;
  bool ampersand = false;
  // After the declaration there are only elements with ASCII names, without attributes and not
  // nested too deep, and text without references. The parser checks all of that.
  bool plain = false;
};
FileTraits file_traits(std::string_view text);

// Throws base::Failure at the first fault of the document: a name that XML does not allow, an
// undefined reference, text or a second element outside the top element, a declaration in the wrong
// position or of another encoding than UTF-8, a repeated attribute, a document type, or elements
// nested deeper than kMaxTreeDepth.
void check_document(const std::string& path, pugi::xml_document& document,
                    const FileTraits& traits);

// Throws the base::Failure of a fault; `offset` is in bytes from the start of the file.
[[noreturn]] void throw_malformed(const std::string& path, const char* fault,
                                  std::ptrdiff_t offset);

}  // namespace orvaneplatform
