#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/export.h"
#include "schema/table_info.h"

// Bytes of one ALTER statement, terminator included.
inline constexpr std::size_t kAlterStatementBytes = 1024;

// Adds columns to a table of the database file at `path`, one after the other: 0 when every column
// was added, -1 otherwise. Each column is a change of its own, so those before a failure stay
// added, and those after it are not tried.
//
// The list is refused, with -1 and a log line, before the first change when
// devcfg_upgrade_statements refuses it. A database that stays locked is a failure here.
ORVANEIP_API int devcfg_update_table(table_info* columns, char* table, char* path);

// The statements of devcfg_update_table, appended in order: "ALTER TABLE table ADD name type" with
// the words as they stand where SQLite reads them as names (and a type such as VARCHAR(20)),
// between double quotes otherwise. So a name is never run as SQL, whoever made it. `table`: the
// name as it is stored, without quotes and without a schema's name.
//
// 0, or -1 and nothing appended: an argument is null, a text has no end in its kColumnTextBytes
// bytes, there are more than 128 columns, or a statement would be longer than kAlterStatementBytes.
// A log line names the column and the reason.
ORVANEIP_API int devcfg_upgrade_statements(const table_info* columns, const char* table,
                                           std::vector<std::string>& statements);
