#include "platform/embedded/vault/sqlite/sqlite_errors.h"

#include <sqlite3.h>

#include <cerrno>
#include <string_view>

#include "platform/vault_status.h"

namespace orvaneplatform {
namespace {

using namespace metadata_vault;

VaultStatus constraint_status(std::string_view message) {
  if (message.find(kVaultFullMessage) != std::string_view::npos) {
    return kVaultFull;
  }
  return message.find("list_index") != std::string_view::npos ? kVaultIndexTaken : kVaultIdTaken;
}

// The errno of a failed commit is kept with the file of the log, any other one with the connection.
int last_errno(sqlite3* handle) {
  if (handle == nullptr) {
    return 0;
  }
  sqlite3_file* log = nullptr;
  int error = 0;
  sqlite3_file_control(handle, "main", SQLITE_FCNTL_JOURNAL_POINTER, &log);
  if (log != nullptr && log->pMethods != nullptr) {
    log->pMethods->xFileControl(log, SQLITE_FCNTL_LAST_ERRNO, &error);
  }
  return error != 0 ? error : sqlite3_system_errno(handle);
}

VaultStatus io_status(sqlite3* handle) {
  switch (last_errno(handle)) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return kVaultNoSpace;
    case EROFS:
      return kVaultReadOnly;
    default:
      return kVaultFailed;
  }
}

VaultStatus status_of(const SQLite::Exception& error, sqlite3* handle) {
  switch (error.getErrorCode() & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
      return kVaultBusy;
    case SQLITE_CONSTRAINT:
      return constraint_status(error.what());
    case SQLITE_READONLY:
    case SQLITE_PERM:
      return kVaultReadOnly;
    case SQLITE_FULL:
      return kVaultNoSpace;
    case SQLITE_IOERR:
      return io_status(handle);
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return kVaultDamaged;
    case SQLITE_CANTOPEN:
      return kVaultUnreachable;
    default:
      return kVaultFailed;
  }
}

}  // namespace

base::Failure failure_of(const SQLite::Exception& error, sqlite3* handle, const std::string& name) {
  return {name, error.what(), status_of(error, handle)};
}

}  // namespace orvaneplatform
