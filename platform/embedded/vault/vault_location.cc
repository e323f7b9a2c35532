#include "platform/embedded/vault/vault_location.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "base/failure.h"
#include "base/fixed_paths.h"
#include "platform/vault_status.h"

namespace orvaneplatform {
namespace {

using base::Failure;
using namespace metadata_vault;

// Returns the scheme of "SCHEME://...", or nothing.
std::string_view scheme_of(std::string_view setting) {
  const std::size_t end = setting.find("://");
  const std::string_view scheme = setting.substr(0, end == std::string_view::npos ? 0 : end);
  const bool is_scheme = std::all_of(scheme.begin(), scheme.end(), [](char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') || byte == '+';
  });
  return is_scheme ? scheme : "";
}

VaultLocation file_at(const std::string& path) {
  if (path.ends_with('/')) {
    throw Failure(path, "a vault database is a file, not a directory", kVaultUnreachable);
  }
  // A path that is not one of the names that SQLite gives a meaning (":memory:").
  return {VaultKind::kSqlite, path.starts_with('/') ? path : "./" + path};
}

}  // namespace

VaultLocation parse_vault_location(const std::string& setting) {
  if (setting.empty()) {
    return {VaultKind::kSqlite, base::kDefaultVaultPath};
  }
  const std::string_view scheme = scheme_of(setting);
  if (scheme.empty()) {
    return file_at(setting);
  }
  if (scheme == "postgresql" || scheme == "postgres") {
    return {VaultKind::kPostgresql, setting};
  }
  const std::string path = setting.substr(scheme.size() + 3);
  if (scheme == "sqlite" && path.starts_with('/')) {
    return file_at(path);
  }
  throw Failure(setting,
                scheme == "sqlite" ? "its path is not absolute: sqlite:///PATH"
                                   : "not a kind of vault database",
                scheme == "sqlite" ? kVaultUnreachable : kVaultUnsupported);
}

VaultLocation vault_location() {
  const char* setting = std::getenv("ORVANE_VAULT");
  return parse_vault_location(setting != nullptr ? setting : "");
}

}  // namespace orvaneplatform
