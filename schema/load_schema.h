#pragma once

#include "platform/export.h"
#include "schema/table_info.h"

// Returns the columns of a table, in the table's order, as SQLite itself reads its CREATE
// statement. Generated columns are included, hidden columns of virtual tables are not. The caller
// releases the list with devcfg_del_tb_info.
//
// Names have no quotes. A type word is the declared type up to the first whitespace or comment
// outside brackets ("DECIMAL(10, 2)" gives DECIMAL(10,2)), spelled as in the statement but without
// quotes; it may be empty.
//
// `path`: the database file; SQLite creates a missing file. `table`: the name exactly as stored,
// letter case included, without quotes and without the name of a schema.
//
// Returns null and logs the reason when the file cannot be opened or read, when it stays locked
// (see sqlite/csqlite.h), when it has no such table (a view is not a table), and when a name or
// type word is longer than kColumnTextBytes - 1 bytes: it would be compared and added under another
// name.
ORVANEIP_API table_info* devcfg_load_table_schema(char* path, char* table);
