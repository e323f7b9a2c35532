#include "bench/counted_syncs.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>

namespace {
std::atomic<int> count = 0;
}

// The program's own definitions take precedence over the C library's.
extern "C" __attribute__((visibility("default"))) int fsync(int file) {
  ++count;
  return static_cast<int>(syscall(SYS_fsync, file));
}

extern "C" __attribute__((visibility("default"))) int fdatasync(int file) {
  ++count;
  return static_cast<int>(syscall(SYS_fdatasync, file));
}

namespace bench {

int sync_count() { return count; }

}  // namespace bench
