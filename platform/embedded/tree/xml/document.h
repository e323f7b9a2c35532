// An XML file as it is read into memory.
#pragma once

#include <pugixml.hpp>
#include <sys/stat.h>

#include <memory>
#include <string>

#include "platform/config_tree.h"

namespace orvaneplatform {

struct XmlDocument {
  std::unique_ptr<char[]> bytes;  // `tree` points into them
  pugi::xml_document tree;
  struct stat status {};  // of the file when it was read
  bool has_byte_order_mark = false;
  std::string original;  // for kCfgChange: the bytes of the file
};

// Reads the whole file. For kCfgRead, layout is left out, and the first text of an element is kept
// in the element itself; for kCfgChange everything is kept, and the file must be writable. Throws
// base::Failure for a file that is not a strict XML document (see document_check.h), is larger than
// kMaxTreeFileBytes, or is not a regular file.
std::shared_ptr<XmlDocument> read_document(const std::string& path, TCfgMode mode);

// Throws base::Failure unless `status` is that of a regular file.
void require_regular_file(const std::string& path, const struct stat& status);

// Returns kMaxTreeFileBytes in words: "64 MiB".
std::string max_file_size();

}  // namespace orvaneplatform
