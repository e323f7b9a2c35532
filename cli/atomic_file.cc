#include "cli/atomic_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "cli/command_error.h"
#include "cli/file.h"

namespace devcfg {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(const std::string& name, int error) {
  throw Refusal("cannot write " + name + ": " + std::generic_category().message(error));
}

// The file behind symbolic links, so that a link stays and what it names is replaced.
fs::path target_of(const std::string& name) {
  std::error_code error;
  const fs::file_status status = fs::status(name, error);
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    throw Refusal("cannot write " + name + ": it is not a regular file");
  }
  const fs::path target = fs::exists(status) ? fs::canonical(name, error) : fs::path(name);
  return error && fs::exists(status) ? fs::path(name) : target;
}

// A new file in the folder of the target, removed unless it takes the target's place.
class TemporaryFile {
 public:
  explicit TemporaryFile(const fs::path& target) : path_(target.string() + ".XXXXXX") {
    const int descriptor = mkostemp(path_.data(), O_CLOEXEC);  // mode 0600
    file_.reset(descriptor >= 0 ? fdopen(descriptor, "wb") : nullptr);
  }
  ~TemporaryFile() {
    if (file_ != nullptr && !kept_) {
      unlink(path_.c_str());
    }
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  bool write(const std::string& bytes) {
    return file_ != nullptr &&
           std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) == bytes.size() &&
           std::fflush(file_.get()) == 0 && fsync(fileno(file_.get())) == 0;
  }
  bool replace(const fs::path& target) {
    kept_ = std::rename(path_.c_str(), target.c_str()) == 0;
    return kept_;
  }

 private:
  std::string path_;
  File file_;
  bool kept_ = false;
};

// The new name survives a power loss once the folder itself is synchronised.
bool synchronise_folder(const fs::path& folder) {
  const int descriptor =
      open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) {
    return false;
  }
  const bool synchronised = fsync(descriptor) == 0;
  close(descriptor);
  return synchronised;
}

}  // namespace

void write_file_atomically(const std::string& name, const std::string& bytes) {
  const fs::path target = target_of(name);
  TemporaryFile file(target);
  if (!file.write(bytes) || !file.replace(target) || !synchronise_folder(target.parent_path())) {
    refuse(name, errno);
  }
}

}  // namespace devcfg
