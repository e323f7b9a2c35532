// What XML demands and the parser lets pass: a file that other readers would refuse, or that could
// not be saved without a loss, is not opened.
#pragma once

#include <pugixml.hpp>

#include <cstddef>
#include <optional>
#include <string_view>

namespace orvaneplatform {

// What the bytes of a file hold, noted before they are parsed in place.
struct FileTraits {
  bool declaration_first = false;  // they begin with an XML declaration
  bool cdata_end = false;          // "]]>" stands somewhere
  bool control = false;            // a control character that XML does not allow
  bool non_ascii = false;
  bool ampersand = false;
  // Behind the declaration there are only elements of ASCII names, without attributes and not
  // nested too deep, and texts without references: what the parser takes of those is right.
  bool plain = false;
};

struct TreeProblem {
  const char* what;       // in words, to follow "the file is refused:"
  std::ptrdiff_t offset;  // in bytes from the beginning of the file, or -1
};

// The first problem of the document, or nothing: characters and names that XML does not allow,
// references that are not defined, text or a second element beside the top element, a declaration
// in the wrong place or of another encoding than UTF-8, attributes that repeat, a document type,
// elements nested deeper than kMaxDepth.
std::optional<TreeProblem> check_tree(pugi::xml_document& document, const FileTraits& traits);

}  // namespace orvaneplatform
