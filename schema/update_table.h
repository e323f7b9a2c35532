#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/export.h"
#include "schema/table_info.h"

// Size limit of one ALTER statement in bytes, terminator included.
inline constexpr std::size_t kAlterStatementBytes = 1024;

// Adds columns to a table of the database file at `path`, one by one. Returns 0 when every column
// was added, -1 otherwise. Each column is a change of its own: columns before a failure stay added,
// and columns after it are not tried.
//
// A list that devcfg_upgrade_statements refuses is logged and gives -1 before the first change. A
// database that stays locked is a failure here.
ORVANEIP_API int devcfg_update_table(table_info* columns, char* table, char* path);

// Appends the statements of devcfg_update_table in order: "ALTER TABLE table ADD name type". Words
// that SQLite reads as names (and types such as VARCHAR(20)) are written unchanged, all others
// between double quotes, so that an untrusted name never runs as SQL. `table`: the name as it is
// stored, without quotes and without the name of a schema.
//
// Returns 0. Returns -1, appends nothing and logs the column and the reason when an argument is
// null, a string has no terminator within its kColumnTextBytes bytes, there are more than
// kMaxNewColumns columns, or a statement would be longer than kAlterStatementBytes.
ORVANEIP_API int devcfg_upgrade_statements(const table_info* columns, const char* table,
                                           std::vector<std::string>& statements);
