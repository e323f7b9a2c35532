#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <string_view>

#include "devtree/device_tree.h"
#include "devtree/fixed_paths.h"
#include "foundation/file_exist.h"
#include "platform/log_sinks.h"

namespace {

constexpr std::string_view kDeclaration = "<?xml version=\"1.0\"?>";

class File {
 public:
  // Opened without emptying it: whoever created it in the meantime keeps what was written.
  explicit File(const char* path) : file_(open(path, O_WRONLY | O_CREAT | O_CLOEXEC, 0666)) {}
  ~File() {
    if (file_ >= 0) {
      close(file_);
    }
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  bool is_open() const { return file_ >= 0; }
  bool holds_bytes() const {
    struct stat status {};
    return fstat(file_, &status) != 0 || status.st_size != 0;
  }
  bool write_whole(std::string_view text) const {
    if (write(file_, text.data(), text.size()) == std::ssize(text)) {
      return true;
    }
    // A part of the declaration would be a damaged file; an empty one is an empty tree.
    [[maybe_unused]] const int emptied = ftruncate(file_, 0);
    return false;
  }

 private:
  int file_;
};

}  // namespace

bool initial_xml() {
  std::string path = orvaneip::kDeviceTreePath;
  if (check_file_exist(path.data())) {
    return true;
  }
  const File file(path.c_str());
  if (file.is_open() && (file.holds_bytes() || file.write_whole(kDeclaration))) {
    return true;
  }
  orvane_log_debug("[libdevcfg] %s, File open error: %s", __func__, path.c_str());
  return false;
}
