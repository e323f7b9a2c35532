#include "platform/embedded/tree_save.h"

#include <fcntl.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>

#include "platform/embedded/files.h"
#include "platform/embedded/tree_layout.h"
#include "platform/log_sinks.h"

namespace orvaneplatform {
namespace {

constexpr std::size_t kExpectedGrowthBytes = 4096;

class TextWriter : public pugi::xml_writer {
 public:
  void write(const void* data, std::size_t size_bytes) override {
    text.append(static_cast<const char*>(data), size_bytes);
  }

  std::string text;
};

// Attributes stand in the tree as in the file; all are written between double quotation marks. They
// can hold one only in a file that has the other kind as well.
class QuoteEscaper : public pugi::xml_tree_walker {
 public:
  bool for_each(pugi::xml_node& node) override {
    for (auto attribute = node.first_attribute(); attribute;
         attribute = attribute.next_attribute()) {
      if (std::strchr(attribute.value(), '"') != nullptr) {
        needed(attribute.set_value(quoted(attribute.value()).c_str()));
      }
    }
    return true;
  }

 private:
  static std::string quoted(const char* text) {
    std::string escaped;
    for (; *text != '\0'; ++text) {
      *text == '"' ? escaped += "&quot;" : escaped += *text;
    }
    return escaped;
  }
};

// The permissions come last: a change of the owner may take some away.
bool take_over(int file, const struct stat& old) {
  struct stat fresh {};
  if (fstat(file, &fresh) != 0) {
    return false;
  }
  const bool same_owner = fresh.st_uid == old.st_uid && fresh.st_gid == old.st_gid;
  return (same_owner || fchown(file, old.st_uid, old.st_gid) == 0) &&
         fchmod(file, old.st_mode & 07777) == 0;
}

bool write_fully(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(file, bytes.data(), bytes.size());
    if (count < 0 && errno != EINTR) {
      return false;
    }
    bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
  }
  return true;
}

// 0, or the errno of what failed.
int write_new_file(const std::string& name, std::string_view bytes, const struct stat& old) {
  FileDescriptor file(open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  const bool written = file.is_open() && take_over(file.get(), old) &&
                       write_fully(file.get(), bytes) && fsync(file.get()) == 0 &&
                       file.close_now() == 0;
  return written ? 0 : errno;
}

int write_and_rename(const std::string& name, const std::string& path, std::string_view bytes,
                     const struct stat& old) {
  unlink(name.c_str());
  int error = write_new_file(name, bytes, old);
  if (error == 0 && std::rename(name.c_str(), path.c_str()) != 0) {
    error = errno;
  }
  if (error != 0) {
    unlink(name.c_str());
  }
  return error;
}

}  // namespace

std::string element_text(pugi::xml_node element) {
  TextWriter writer;
  element.print(writer, "", pugi::format_raw | pugi::format_no_escapes, pugi::encoding_utf8);
  return std::move(writer.text);
}

std::string tree_text(TreeFile& tree) {
  if (tree.original.find('\'') != std::string::npos) {
    QuoteEscaper escaper;
    tree.document.traverse(escaper);
  }
  TextWriter writer;
  writer.text.reserve(tree.original.size() + kExpectedGrowthBytes);
  tree.document.save(writer, "",
                     pugi::format_raw | pugi::format_no_escapes | pugi::format_no_declaration |
                         (tree.byte_order_mark ? pugi::format_write_bom : 0U),
                     pugi::encoding_utf8);
  return std::move(writer.text);
}

bool replace_file(const std::string& path, std::string_view bytes, const struct stat& old) {
  const std::filesystem::path folder = folder_of(path);  // nothing may throw any more afterwards
  int error = write_and_rename(path + ".saving", path, bytes, old);
  if (error == 0) {
    error = synchronise_folder(folder);
  }
  if (error != 0) {
    orvane_log_debug("[cfgtree] saving %s failed: %s", path.c_str(),
                     std::generic_category().message(error).c_str());
  }
  return error == 0;
}

}  // namespace orvaneplatform
