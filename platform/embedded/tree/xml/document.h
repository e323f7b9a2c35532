// A configuration tree as it is read from its file.
#pragma once

#include <pugixml.hpp>
#include <sys/stat.h>

#include <memory>
#include <string>

namespace orvaneplatform {

// Larger files are neither opened nor written.
inline constexpr std::size_t kMaxFileBytes = std::size_t{64} << 20;

enum class TreeUse {
  kRead,    // layout is left out, the text of an element stands in the element itself
  kChange,  // everything is kept for the save
};

struct TreeFile {
  std::unique_ptr<char[]> bytes;  // the document points into them
  pugi::xml_document document;
  struct stat status {};  // of the file when it was read
  bool byte_order_mark = false;
  std::string original;  // for kChange: the file's bytes
};

// Reads the whole file once, and refuses what is no strict XML document (see check_tree), is larger
// than kMaxFileBytes, or is no regular file. A file for kChange has to be writable. Null and a log
// line on failure.
std::shared_ptr<TreeFile> read_tree(const std::string& path, TreeUse use);

// Logs that `path` is not opened.
void report_not_opened(const char* path, const char* reason);

}  // namespace orvaneplatform
