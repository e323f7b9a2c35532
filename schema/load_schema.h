#pragma once

#include "platform/export.h"
#include "schema/table_info.h"

// The columns of a table, in the table's order, as SQLite itself reads its CREATE statement;
// generated columns included, the hidden ones of virtual tables left out. The caller releases the
// list with devcfg_del_tb_info.
//
// A name is given without quotes. A type word is the declared type up to the first white space or
// comment that does not stand in brackets ("DECIMAL(10, 2)" gives DECIMAL(10,2)), spelled as in the
// statement but without quotes, or empty.
//
// `path`: the database file; SQLite creates one that is missing. `table`: the name exactly as
// stored, letter case included, without quotes and without a schema's name.
//
// Null, with a log line, when the file cannot be opened or read, when it stays locked (as CSqlite
// says), when it holds no such table (a view is none), and when a name or type word is longer than
// kColumnTextBytes - 1 bytes: it would be compared and added under another name.
ORVANEIP_API table_info* devcfg_load_table_schema(char* path, char* table);
