// The record table_info inside the library.
#pragma once

#include <memory>
#include <string>

#include "schema/table_info.h"

namespace orvaneip {

struct ReleaseColumns {
  void operator()(table_info* info) const { devcfg_del_tb_info(info); }
};
using ColumnList = std::unique_ptr<table_info, ReleaseColumns>;

// Returns a list with room for `count` columns; null when memory is exhausted.
ColumnList new_column_list(int count);

// Returns whether name and type of column `index` are present and end within their buffers.
bool is_valid_column(const table_info& columns, int index);

// Returns whether all columns of the list are valid. An empty list needs no arrays.
bool is_valid(const table_info* columns);

// Copies name and type, shorter than kColumnTextBytes, into column `index`.
void set_column(table_info& columns, int index, const char* name, const char* type);

// Returns the message for more than kMaxNewColumns columns.
std::string too_many_columns();

}  // namespace orvaneip
