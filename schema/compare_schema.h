#pragma once

#include "platform/export.h"
#include "schema/table_info.h"

// The largest number of new columns that one comparison reports and one upgrade adds.
inline constexpr int kMaxNewColumns = 128;

// Returns the columns of `wanted` whose names no column of `current` has, in the order of `wanted`.
// Names are compared byte for byte, letter case included, although SQLite refuses to add a column
// whose name differs in letter case only. Types are not compared. Both lists are not changed. The
// caller releases the result with devcfg_del_tb_info.
//
// `new_count` (may be null) receives the number of columns in the result. When a list is null or
// contains a string without a terminator, or more than kMaxNewColumns columns are new, the result
// is an empty list, `new_count` receives -1, and the reason is logged. The result is null only when
// memory is exhausted.
ORVANEIP_API table_info* devcfg_compare_table_schema(table_info* current, table_info* wanted,
                                                     int* new_count);
