// The record table_info, as the operations of this folder handle it.
#pragma once

#include <memory>

#include "schema/table_info.h"

namespace orvaneip {

struct ReleaseColumns {
  void operator()(table_info* info) const { devcfg_del_tb_info(info); }
};
using ColumnList = std::unique_ptr<table_info, ReleaseColumns>;

// A list with room for `count` columns; null when memory is exhausted.
ColumnList new_column_list(int count);

// True when the texts of column `index` are there and end within their buffers.
bool has_valid_texts(const table_info& columns, int index);

// True for a list all of whose texts are valid; an empty one needs no arrays.
bool is_valid(const table_info* columns);

// Copies texts that are shorter than kColumnTextBytes into column `index`.
void set_column(table_info& columns, int index, const char* name, const char* type);

}  // namespace orvaneip
