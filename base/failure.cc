#include "base/failure.h"

#include <system_error>

namespace base {

void throw_system_failure(const std::string& path, int error, int status) {
  throw Failure(path, std::generic_category().message(error), status);
}

}  // namespace base
