#include "cli/json_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "cli/command_error.h"

namespace devcfg {
namespace {

struct FileClose {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

struct TokenerRelease {
  void operator()(json_tokener* tokener) const { json_tokener_free(tokener); }
};

[[noreturn]] void fail(const std::string& name, const std::string& reason) {
  throw CommandError("cannot read " + shown_name(name) + ": " + reason);
}

std::string read_all(std::FILE* file, const std::string& name) {
  std::string bytes;
  char block[65536];
  std::size_t length = 0;
  while ((length = std::fread(block, 1, sizeof(block), file)) > 0) {
    bytes.append(block, length);
    if (bytes.size() > kMaxJsonFileMib << 20) {
      fail(name, "it is larger than " + std::to_string(kMaxJsonFileMib) + " MiB");
    }
  }
  if (std::ferror(file) != 0) {
    fail(name, std::strerror(errno));
  }
  return bytes;
}

std::string read_file(const std::string& name) {
  if (name == "-") {
    return read_all(stdin, name);
  }
  const std::unique_ptr<std::FILE, FileClose> file(std::fopen(name.c_str(), "rbe"));
  if (file == nullptr) {
    fail(name, std::strerror(errno));
  }
  return read_all(file.get(), name);
}

std::string position(const std::string& text, std::size_t offset) {
  const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(offset, text.size()));
  const auto line = 1 + std::count(text.begin(), end, '\n');
  const auto line_start = std::find(std::make_reverse_iterator(end), text.rend(), '\n').base();
  return "line " + std::to_string(line) + ", column " + std::to_string(end - line_start + 1);
}

}  // namespace

std::string shown_name(const std::string& name) { return name == "-" ? "standard input" : name; }

Json read_json_file(const std::string& name) {
  const std::string text = read_file(name);
  if (const std::size_t nul = text.find('\0'); nul != std::string::npos) {
    fail(name, position(text, nul) + ": a NUL byte, which JSON does not allow");
  }
  const std::unique_ptr<json_tokener, TokenerRelease> tokener(json_tokener_new_ex(kMaxJsonDepth));
  json_tokener_set_flags(tokener.get(), JSON_TOKENER_STRICT);
  // The terminator is parsed as well: it marks the end for the parser.
  Json document(
      json_tokener_parse_ex(tokener.get(), text.c_str(), static_cast<int>(text.size()) + 1));
  if (const json_tokener_error error = json_tokener_get_error(tokener.get());
      error != json_tokener_success) {
    fail(name, position(text, json_tokener_get_parse_end(tokener.get())) + ": " +
                   json_tokener_error_desc(error));
  }
  return document;
}

}  // namespace devcfg
