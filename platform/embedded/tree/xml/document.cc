#include "platform/embedded/tree/xml/document.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <system_error>

#include "base/file_descriptor.h"
#include "platform/embedded/tree/xml/document_check.h"
#include "platform/embedded/tree/xml/element_search.h"
#include "platform/embedded/tree/xml/characters.h"
#include "platform/log_sinks.h"

namespace orvaneplatform {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// A document as such: neither references nor line ends nor blanks are touched, and text outside the
// top element is kept, so that check_tree sees it.
constexpr unsigned int kParseAll = pugi::parse_fragment | pugi::parse_declaration |
                                   pugi::parse_doctype | pugi::parse_pi | pugi::parse_comments |
                                   pugi::parse_cdata;

unsigned int parse_options(TreeUse use) {
  return kParseAll |
         (use == TreeUse::kChange ? pugi::parse_ws_pcdata
                                  : pugi::parse_ws_pcdata_single | pugi::parse_embed_pcdata);
}

std::string reason_of(int error) { return std::generic_category().message(error); }

// Reads up to `size_bytes`; fewer when the file ends. -1 on failure.
ssize_t read_fully(int file, char* buffer, std::size_t size_bytes) {
  std::size_t done = 0;
  while (done < size_bytes) {
    const ssize_t count = read(file, buffer + done, size_bytes - done);
    if (count == 0) {
      break;
    }
    if (count < 0 && errno != EINTR) {
      return -1;
    }
    done += count > 0 ? static_cast<std::size_t>(count) : 0;
  }
  return static_cast<ssize_t>(done);
}

FileTraits traits_of(std::string_view text) {
  FileTraits traits;
  // Behind a longer name it is another instruction.
  traits.declaration_first = text.starts_with("<?xml") && text.find_first_of(" \t\r\n?", 5) == 5;
  traits.cdata_end = text.find("]]>") != std::string_view::npos;
  const std::size_t declared = traits.declaration_first ? text.find("?>") : 0;
  const std::size_t body = std::min(declared, text.size());
  const ByteSummary head = summarise(text.substr(0, body));
  const ByteSummary rest = summarise(text.substr(body));
  traits.control = head.control || rest.control;
  traits.non_ascii = head.non_ascii || rest.non_ascii;
  traits.ampersand = head.ampersand || rest.ampersand;
  traits.plain = !traits.cdata_end && !rest.non_ascii && !rest.ampersand && !rest.quote &&
                 !rest.markup && rest.depth_bound <= static_cast<int>(kMaxDepth);
  return traits;
}

class Reader {
 public:
  Reader(const std::string& path, TreeUse use) : path_(path), use_(use) {}

  // Empty, or why the file is refused.
  std::string read_into(TreeFile& tree) {
    std::string problem = load_bytes(tree);
    return problem.empty() ? parse(tree) : problem;
  }

 private:
  std::string load_bytes(TreeFile& tree) {
    const int access = use_ == TreeUse::kChange ? O_RDWR : O_RDONLY;
    const base::FileDescriptor file(open(path_.c_str(), access | O_CLOEXEC | O_NONBLOCK));
    if (!file.is_open() || fstat(file.get(), &tree.status) != 0) {
      return reason_of(errno);
    }
    if (!S_ISREG(tree.status.st_mode)) {
      return "it is not a file";
    }
    const auto size = static_cast<std::size_t>(tree.status.st_size);
    if (size > kMaxFileBytes) {
      return "it is larger than 64 MiB";
    }
    // The parser wants a byte of its own behind the text.
    tree.bytes = std::make_unique_for_overwrite<char[]>(size + 1);
    const ssize_t count = read_fully(file.get(), tree.bytes.get(), size);
    if (count < 0) {
      return reason_of(errno);
    }
    length_ = static_cast<std::size_t>(count);
    tree.bytes[length_] = '\0';
    return "";
  }

  std::string parse(TreeFile& tree) {
    std::string_view text(tree.bytes.get(), length_);
    if (use_ == TreeUse::kChange) {
      tree.original = text;
    }
    tree.byte_order_mark = text.starts_with(kByteOrderMark);
    text.remove_prefix(tree.byte_order_mark ? kByteOrderMark.size() : 0);
    const FileTraits traits = traits_of(text);
    if (traits.control ||
        (traits.non_ascii && find_invalid_character(text) != std::string_view::npos)) {
      return "it holds bytes that are not text in UTF-8";
    }
    if (text.ends_with('<')) {  // which the parser lets pass after a blank
      return "it ends within an element";
    }
    const pugi::xml_parse_result result = tree.document.load_buffer_inplace(
        tree.bytes.get(), length_ + 1, parse_options(use_), pugi::encoding_utf8);
    if (!result) {
      return located(result.description(), result.offset);
    }
    const auto problem = check_tree(tree.document, traits);
    return problem ? located(problem->what, problem->offset) : "";
  }

  static std::string located(const char* what, std::ptrdiff_t offset) {
    return std::string(what) + ", at byte " + std::to_string(offset);
  }

  const std::string& path_;
  TreeUse use_;
  std::size_t length_ = 0;
};

}  // namespace

std::shared_ptr<TreeFile> read_tree(const std::string& path, TreeUse use) {
  auto tree = std::make_shared<TreeFile>();
  const std::string problem = Reader(path, use).read_into(*tree);
  if (!problem.empty()) {
    report_not_opened(path.c_str(), problem.c_str());
    return nullptr;
  }
  return tree;
}

void report_not_opened(const char* path, const char* reason) {
  orvane_log_debug("[cfgtree] %s is not opened: %s", path, reason);
}

}  // namespace orvaneplatform
