#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/export.h"

// Bytes of each name and type word, terminator included.
inline constexpr std::size_t kColumnTextBytes = 128;

// The columns of one table, in the table's order. The record, both arrays and every text are blocks
// of the malloc family; devcfg_del_tb_info releases all of them.
struct table_info {
  std::int32_t col_count;
  char** col_name;  // `col_count` buffers of kColumnTextBytes bytes
  char** col_type;  // the same: the first word of the declared type, empty for a column without one
};

// Gives `info`, which the caller has allocated with malloc, room for `count` columns with empty
// texts. When memory is exhausted, or `count` is negative, the list is empty: `col_count` is 0.
// What `info` held before is not looked at. Null is left alone.
ORVANEIP_API void devcfg_init_tb_info(table_info* info, int count);

// Releases a list and the record itself. Null is left alone.
ORVANEIP_API void devcfg_del_tb_info(table_info* info);
