// One SQLite connection: statements that wait for other users of the file, and query results that
// are read with a cursor and typed getters.
//
// The order of a call is: construct, openDatabase, any number of statements (each QuerySQL followed
// by reading its result), closeDatabase, delete. The object is in one of three states: closed, open
// without a result, open with a result. An ExecSQL or a QuerySQL that fails closes the connection:
// open it again before the next statement.
//
// What all operations keep to:
//  - On a closed object every statement is logged and answers false or -1. Without a result there
//    is no column, and every getter answers false.
//  - A null argument that has no stated meaning is refused with false or -1, and changes nothing.
//  - While another connection holds the database busy or locked, an operation is tried up to 100000
//    times with pauses of 10 microseconds and one log line for each attempt. When the last attempt
//    has met the lock as well, the operation gives up and answers true; `last_rc` (ExecSQL,
//    Parametrized_ExecSQL) or a null `result_table` (QuerySQL) tells that nothing was done.
//  - Messages go to LogDebug, with the tag "[CSqlite]".
//  - Objects share nothing; one object must not be used by two threads at once.
#pragma once

#include <cstdint>

#include "platform/export.h"

struct sqlite3;

class ORVANEIP_API CSqlite {
 public:
  // Closed. `name`: the path for openDatabase(nullptr); null or empty: none.
  explicit CSqlite(const char* name);

  // Closes what is open.
  virtual ~CSqlite();

  CSqlite(const CSqlite&) = delete;
  CSqlite& operator=(const CSqlite&) = delete;

  // Opens the file `name`, or the one in `db_name` when `name` is null or empty; SQLite creates a
  // file that is missing. What the object had open is closed first; when that is refused the object
  // stays as it is, its name included, and the answer is false.
  bool openDatabase(const char* name);

  // Releases the result and closes the connection. True when it is closed afterwards, also when
  // none was open; false when SQLite refuses (a statement of the user's own on `db` is unfinished):
  // it stays open then.
  bool closeDatabase();

  // Runs the statements of `sql`; rows are dropped. A busy retry runs the whole text again, with
  // what has run of it: so "BEGIN; ..." that meets a lock behind its BEGIN fails at the second
  // BEGIN, and the transaction is rolled back as the connection is closed. Let "BEGIN IMMEDIATE",
  // which meets the lock itself, be a call of its own, and each statement after it.
  bool ExecSQL(const char* sql);

  // Runs the statements of `sql`, then reads the AUTOINCREMENT counter of `table`: after an INSERT
  // into it, the key just given out. -1 when a statement fails (the connection is closed then) or
  // there is no counter. A busy retry goes on with the statement that met the lock: what has run is
  // not run again. Rows of `sql` stand in the result before the counter's, as from QuerySQL, and so
  // a query in `sql` hides the counter. `table`: as for GetLastSequence.
  int ExecSQL(const char* sql, char* table);

  // Runs one statement that yields no rows, with the texts that follow as its parameters 1, 2 and
  // so on; the first null pointer ends them. Texts beyond the statement's parameters are ignored,
  // parameters without a text are NULL. A failure, or a row, gives false and leaves the connection
  // open.
  bool Parametrized_ExecSQL(const char* sql, ...) __attribute__((sentinel));

  // Runs a query and holds its whole result; the cursor stands on the first row. The result before
  // it is released in any case.
  bool QuerySQL(const char* sql);

  // The AUTOINCREMENT counter of `table`, a name of any length; -1 when there is none or the query
  // fails. The result is the query's afterwards. A single quote in the name has to be doubled; a
  // name with one that is not makes the query fail, which closes the connection.
  int GetLastSequence(char* table);

  // The cursor: the rows of the result, whether it stands behind the last one, a step forward (not
  // beyond that place), back to the first.
  int QTotalRecords();
  bool QEof();
  void QNext();
  void QReset();

  // The index of the first column with exactly this name, or -1. A result without rows has no
  // column names.
  int getColumnIndex(const char* column);

  // The value of a column in the current row. False, and `value` left alone, when there is no such
  // column or no current row, or the value is NULL.
  //
  // Numbers are read from the start of the text as atoi and atol do: 0 when it is none, cut to the
  // size of the type. The text "null" gives false.
  bool QGetIntegerByName(const char* column, int* value);
  bool QGetLongByName(const char* column, long* value);

  // Copies the text with its terminator. The buffer has to hold the longest value that it can meet:
  // there is no limit here. QGetStringByName1 needs none.
  bool QGetStringByName(const char* column, char* buffer);

  // A copy of the text, to be released with free. NULL and an empty text give false and set `value`
  // to null.
  bool QGetStringByName1(const char* column, char** value);

  // Releases the result; the counts and the cursor stay.
  void freeResult();

  // The fields are part of the interface; programs may read them.
  sqlite3* db;           // null: closed
  char db_name[1024];    // path of the file; a longer one is cut to 1023 bytes
  std::int32_t last_rc;  // of the last sqlite3_exec, _prepare_v2, _step or _close; not of queries
  char* err_msg;         // SQLite's words on a failure; null outside the operations
  std::int32_t row_count;
  std::int32_t column_count;
  std::int32_t cursor;  // 0 to row_count
  char** result_table;  // as sqlite3_get_table gives it: the names, then row after row; or null
};
