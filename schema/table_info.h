#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/export.h"

// Size in bytes of the buffer of each name and each type word, terminator included.
inline constexpr std::size_t kColumnTextBytes = 128;

// The columns of one table, in the table's order. The record, both arrays and every buffer are
// blocks of the malloc family; devcfg_del_tb_info releases all of them.
struct table_info {
  std::int32_t col_count;
  char** col_name;  // `col_count` buffers of kColumnTextBytes bytes
  char**
      col_type;  // the same; the first word of the declared type, empty for a column without a type
};

// Initialises `info`, which the caller has allocated with malloc, as a list of `count` columns
// whose names and types are empty. The list is empty, `col_count` 0, when memory is exhausted or
// `count` is negative. The previous contents of `info` are not read. Does nothing when `info` is
// null.
ORVANEIP_API void devcfg_init_tb_info(table_info* info, int count);

// Releases a list and the record itself. Does nothing when `info` is null.
ORVANEIP_API void devcfg_del_tb_info(table_info* info);
