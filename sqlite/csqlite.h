// An SQLite connection: statements that wait for other users of the file, and query results that
// are read with a cursor and typed getters.
//
// The order of calls is: construct, openDatabase, any number of statements (each QuerySQL followed
// by reading its result), closeDatabase, delete. The object is in one of three states: closed, open
// without a result, open with a result. An ExecSQL or a QuerySQL that fails closes the connection:
// open it again before the next statement.
//
// Rules of all operations:
//  - On a closed object every statement is logged and returns false or -1. Without a result there
//    are no columns, and every getter returns false.
//  - A null argument without a stated meaning gives false or -1, and changes nothing.
//  - While another connection holds the database busy or locked, an operation makes up to
//    kSqliteBusyAttempts attempts with pauses of kSqliteBusyPauseUs, and logs each attempt. When
//    the last attempt meets the lock too, the operation gives up and returns true; `last_rc`
//    (ExecSQL, Parametrized_ExecSQL) or a null `result_table` (QuerySQL) shows that nothing was
//    done.
//  - Messages go to LogDebug, with the tag "[CSqlite]".
//  - Objects share nothing. Two threads must not use one object at the same time.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/export.h"

struct sqlite3;

// Attempts of one operation on a database that another connection holds, and the pause after each
// attempt, in microseconds.
inline constexpr int kSqliteBusyAttempts = 100'000;
inline constexpr unsigned int kSqliteBusyPauseUs = 10;

// Size in bytes of the path of a database file, terminator included.
inline constexpr std::size_t kSqlitePathBytes = 1024;

class ORVANEIP_API CSqlite {
 public:
  // Constructs a closed object. `name`: the path for openDatabase(nullptr), or null or empty.
  explicit CSqlite(const char* name);

  // Closes the connection if it is open.
  virtual ~CSqlite();

  CSqlite(const CSqlite&) = delete;
  CSqlite& operator=(const CSqlite&) = delete;

  // Opens the file `name`, or the file `db_name` when `name` is null or empty; SQLite creates a
  // missing file. An open connection is closed first; when SQLite refuses that, the result is false
  // and nothing changes, the name included.
  bool openDatabase(const char* name);

  // Releases the result and closes the connection. Returns true when the object is closed
  // afterwards, also when nothing was open. Returns false, and the connection stays open, when
  // SQLite refuses: the user has an unfinished statement on `db`.
  bool closeDatabase();

  // Runs the statements of `sql` and drops their rows. A busy retry runs the whole text again, also
  // the statements that have already run: "BEGIN; ..." that meets a lock after its BEGIN fails at
  // the second BEGIN, and the transaction is rolled back when the connection is closed. Run "BEGIN
  // IMMEDIATE", which meets the lock itself, in a call of its own, and so each statement after it.
  bool ExecSQL(const char* sql);

  // Runs the statements of `sql`, then returns the AUTOINCREMENT counter of `table`: after an
  // INSERT into this table, the key of the new row. Returns -1 when a statement fails (the
  // connection is closed then) or there is no counter. A busy retry continues with the statement
  // that met the lock: statements that have run are not run again. Rows of `sql` come before the
  // counter in the result, as from QuerySQL, so a query in `sql` hides the counter. `table`: as for
  // GetLastSequence.
  int ExecSQL(const char* sql, char* table);

  // Runs one statement that returns no rows, with the `const char*` arguments that follow as its
  // parameters 1, 2 and so on; a null pointer ends them. Arguments beyond the statement's
  // parameters are ignored, parameters without an argument are NULL. Returns false, with the
  // connection still open, when the statement fails or returns a row.
  bool Parametrized_ExecSQL(const char* sql, ...) __attribute__((sentinel));

  // Runs a query and holds its whole result, with the cursor on the first row. The previous result
  // is released in any case.
  bool QuerySQL(const char* sql);

  // Returns the AUTOINCREMENT counter of `table`, a name of any length; -1 when there is no counter
  // or the query fails. Afterwards the object holds the result of this query. A single quote in the
  // name must be doubled; one that is not makes the query fail, which closes the connection.
  int GetLastSequence(char* table);

  // Returns the number of rows in the result.
  int QTotalRecords();

  // Returns whether the cursor is after the last row.
  bool QEof();

  // Moves the cursor to the next row, at most to after the last row.
  void QNext();

  // Moves the cursor to the first row.
  void QReset();

  // Returns the index of the first column with exactly this name, or -1. A result without rows has
  // no column names.
  int getColumnIndex(const char* column);

  // The getters read a column of the current row. They return false and do not change `value` when
  // there is no such column, no current row, or the value is NULL.
  //
  // Store the number at the start of the value, as atoi and atol read it: 0 when there is no
  // number, cut to the size of the type. The value "null" gives false.
  bool QGetIntegerByName(const char* column, int* value);
  bool QGetLongByName(const char* column, long* value);

  // Copies the value with its terminator. The buffer must have room for the longest value that can
  // occur: the size is not limited. QGetStringByName1 needs no buffer.
  bool QGetStringByName(const char* column, char* buffer);

  // Stores a copy of the value, which the caller releases with free. NULL and an empty value give
  // false and set `value` to null.
  bool QGetStringByName1(const char* column, char** value);

  // Releases the result. The counts and the cursor keep their values.
  void freeResult();

  // The fields are part of the interface; programs may read them.
  sqlite3* db;                     // null: closed
  char db_name[kSqlitePathBytes];  // path of the file; a longer path is cut to fit
  std::int32_t last_rc;  // of the last sqlite3_exec, _prepare_v2, _step or _close; not of queries
  char* err_msg;         // SQLite's message on a failure; null outside the operations
  std::int32_t row_count;
  std::int32_t column_count;
  std::int32_t cursor;  // 0 to row_count
  char** result_table;  // as from sqlite3_get_table: the names, then row after row; or null
};
