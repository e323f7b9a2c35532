#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <string_view>

#include "devtree/device_tree.h"
#include "devtree/internal/fixed_paths.h"
#include "foundation/file_exist.h"
#include "platform/log_sinks.h"

namespace {

constexpr std::string_view kDeclaration = "<?xml version=\"1.0\"?>";

class Descriptor {
 public:
  explicit Descriptor(int value) : value_(value) {}
  ~Descriptor() {
    if (value_ >= 0) {
      close(value_);
    }
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  bool is_open() const { return value_ >= 0; }
  bool synchronise() const { return fsync(value_) == 0; }
  bool read_status(struct stat& status) const { return fstat(value_, &status) == 0; }
  bool write_whole(std::string_view text) const {
    if (write(value_, text.data(), text.size()) == std::ssize(text)) {
      return true;
    }
    // A part of the declaration would be a damaged file; an empty one is an empty tree.
    [[maybe_unused]] const int emptied = ftruncate(value_, 0);
    return false;
  }

 private:
  int value_;
};

// The new name survives a power loss once the folder that it stands in is synchronised.
bool synchronise_folder_of(const std::string& path) {
  std::error_code unless_it_is_gone;
  const auto folder = std::filesystem::canonical(path, unless_it_is_gone).parent_path();
  return Descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)).synchronise();
}

// Opened without emptying it: whoever created it in the meantime keeps what was written.
bool create(const std::string& path) {
  const Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  struct stat status {};
  return file.is_open() && file.read_status(status) &&
         (status.st_size != 0 ||
          (file.write_whole(kDeclaration) && file.synchronise() && synchronise_folder_of(path)));
}

}  // namespace

bool initial_xml() {
  std::string path = orvaneip::kDeviceTreePath;
  if (check_file_exist(path.data()) || create(path)) {
    return true;
  }
  orvane_log_debug("[libdevcfg] %s, File open error: %s", __func__, path.c_str());
  return false;
}
