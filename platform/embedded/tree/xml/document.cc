#include "platform/embedded/tree/xml/document.h"

#include <fcntl.h>

#include <cerrno>
#include <string_view>

#include "base/failure.h"
#include "base/file_descriptor.h"
#include "platform/embedded/tree/xml/characters.h"
#include "platform/embedded/tree/xml/document_check.h"

namespace orvaneplatform {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// The parser changes neither references nor line ends nor whitespace, and keeps text outside the
// top element for check_document.
constexpr unsigned int kParseAll = pugi::parse_fragment | pugi::parse_declaration |
                                   pugi::parse_doctype | pugi::parse_pi | pugi::parse_comments |
                                   pugi::parse_cdata;

unsigned int parse_options(TCfgMode mode) {
  return kParseAll | (mode == kCfgChange ? pugi::parse_ws_pcdata
                                         : pugi::parse_ws_pcdata_single | pugi::parse_embed_pcdata);
}

// Reads `size_bytes`, or fewer when the file ends before. Returns how many.
std::size_t read_fully(const std::string& path, int file, char* buffer, std::size_t size_bytes) {
  std::size_t done = 0;
  while (done < size_bytes) {
    const ssize_t count = read(file, buffer + done, size_bytes - done);
    if (count == 0) {
      break;
    }
    if (count < 0 && errno != EINTR) {
      base::throw_system_failure(path, errno);
    }
    done += count > 0 ? static_cast<std::size_t>(count) : 0;
  }
  return done;
}

// Returns the number of bytes that were read.
std::size_t load_bytes(const std::string& path, TCfgMode mode, XmlDocument& document) {
  const int access = mode == kCfgChange ? O_RDWR : O_RDONLY;
  const base::FileDescriptor file(open(path.c_str(), access | O_CLOEXEC | O_NONBLOCK));
  if (!file.is_open() || fstat(file.get(), &document.status) != 0) {
    base::throw_system_failure(path, errno);
  }
  require_regular_file(path, document.status);
  const auto size = static_cast<std::size_t>(document.status.st_size);
  if (size > kMaxTreeFileBytes) {
    throw base::Failure(path, "it is larger than " + max_file_size());
  }
  // The parser needs one more byte after the text.
  document.bytes = std::make_unique_for_overwrite<char[]>(size + 1);
  const std::size_t length = read_fully(path, file.get(), document.bytes.get(), size);
  document.bytes[length] = '\0';
  return length;
}

// What has to be checked before the parser changes the bytes.
FileTraits check_bytes(const std::string& path, std::string_view text) {
  const FileTraits traits = file_traits(text);
  if (traits.control ||
      (traits.non_ascii && find_invalid_character(text) != std::string_view::npos)) {
    throw base::Failure(path, "it holds bytes that are not text in UTF-8");
  }
  if (text.ends_with('<')) {  // the parser accepts that after whitespace
    throw base::Failure(path, "it ends within an element");
  }
  return traits;
}

}  // namespace

std::shared_ptr<XmlDocument> read_document(const std::string& path, TCfgMode mode) {
  auto document = std::make_shared<XmlDocument>();
  const std::size_t length = load_bytes(path, mode, *document);
  std::string_view text(document->bytes.get(), length);
  if (mode == kCfgChange) {
    document->original = text;
  }
  document->has_byte_order_mark = text.starts_with(kByteOrderMark);
  text.remove_prefix(document->has_byte_order_mark ? kByteOrderMark.size() : 0);
  const FileTraits traits = check_bytes(path, text);
  const pugi::xml_parse_result result = document->tree.load_buffer_inplace(
      document->bytes.get(), length + 1, parse_options(mode), pugi::encoding_utf8);
  if (!result) {
    throw_malformed(path, result.description(), result.offset);
  }
  check_document(path, document->tree, traits);
  return document;
}

void require_regular_file(const std::string& path, const struct stat& status) {
  if (!S_ISREG(status.st_mode)) {
    throw base::Failure(path, "it is not a file");
  }
}

std::string max_file_size() { return std::to_string(kMaxTreeFileBytes >> 20) + " MiB"; }

}  // namespace orvaneplatform
