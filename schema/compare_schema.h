#pragma once

#include "platform/export.h"
#include "schema/table_info.h"

// New columns that one comparison reports at most.
inline constexpr int kMaxNewColumns = 128;

// The columns of `wanted` whose names occur in no column of `current`, in the order of `wanted`.
// Names are compared byte for byte, letter case included, although SQLite then refuses to add a
// column that differs in letter case only; types are not compared. Both lists stay as they are. The
// caller releases the result with devcfg_del_tb_info.
//
// `new_count` (may be null) receives the number of columns in the result. It receives -1, the
// result is an empty list and a log line tells why, when a list is null or holds a text without an
// end, or when more than kMaxNewColumns columns are new: nothing is left out silently. Never null
// unless memory is exhausted.
ORVANEIP_API table_info* devcfg_compare_table_schema(table_info* current, table_info* wanted,
                                                     int* new_count);
