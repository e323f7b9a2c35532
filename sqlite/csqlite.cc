#include "sqlite/csqlite.h"

#include <sqlite3.h>

#include <cstddef>
#include <cstring>

#include "foundation/logging.h"

namespace {

// `path` may be `object.db_name` itself.
void store_path(CSqlite& object, const char* path) {
  const std::size_t length = strnlen(path, sizeof(object.db_name) - 1);
  std::memmove(object.db_name, path, length);
  std::memset(object.db_name + length, 0, sizeof(object.db_name) - length);
}

}  // namespace

CSqlite::CSqlite(const char* name)
    : db(nullptr),
      db_name{},
      last_rc(0),
      err_msg(nullptr),
      row_count(0),
      column_count(0),
      cursor(0),
      result_table(nullptr) {
  if (name != nullptr) {
    store_path(*this, name);
  }
}

CSqlite::~CSqlite() {
  if (!closeDatabase()) {
    // SQLite releases the connection together with the user's last statement on it.
    sqlite3_close_v2(db);
  }
}

bool CSqlite::openDatabase(const char* name) {
  const char* const path = name != nullptr && *name != '\0' ? name : db_name;
  if (*path == '\0') {
    LogDebug("[CSqlite] Database name is NULL\n");
    return false;
  }
  if (db != nullptr && !closeDatabase()) {
    return false;
  }
  store_path(*this, path);
  if (sqlite3_open(db_name, &db) != SQLITE_OK) {
    LogDebug("[CSqlite] Can't open database: %s\n", sqlite3_errmsg(db));
    sqlite3_close(db);
    db = nullptr;
    return false;
  }
  return true;
}

bool CSqlite::closeDatabase() {
  freeResult();
  last_rc = sqlite3_close(db);
  if (last_rc != SQLITE_OK) {
    LogDebug("[CSqlite] Close database error: %s\n", sqlite3_errmsg(db));
    return false;
  }
  db = nullptr;
  return true;
}

// Programs were built with this layout: it must not change.
#if defined(__LP64__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(offsetof(CSqlite, db) == 8);
static_assert(offsetof(CSqlite, db_name) == 16);
static_assert(offsetof(CSqlite, last_rc) == 1040);
static_assert(offsetof(CSqlite, err_msg) == 1048);
static_assert(offsetof(CSqlite, row_count) == 1056);
static_assert(offsetof(CSqlite, column_count) == 1060);
static_assert(offsetof(CSqlite, cursor) == 1064);
static_assert(offsetof(CSqlite, result_table) == 1072);
static_assert(sizeof(CSqlite) == 1080);
#pragma GCC diagnostic pop
#endif
