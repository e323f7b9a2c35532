#include "schema/internal/column_list.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "schema/compare_schema.h"

namespace orvaneip {
namespace {

bool is_valid_text(const char* text) {
  return text != nullptr && strnlen(text, kColumnTextBytes) < kColumnTextBytes;
}

}  // namespace

ColumnList new_column_list(int count) {
  ColumnList columns(static_cast<table_info*>(std::malloc(sizeof(table_info))));
  devcfg_init_tb_info(columns.get(), count);
  return columns != nullptr && columns->col_count == count && columns->col_name != nullptr
             ? std::move(columns)
             : nullptr;
}

bool is_valid_column(const table_info& columns, int index) {
  return columns.col_name != nullptr && columns.col_type != nullptr &&
         is_valid_text(columns.col_name[index]) && is_valid_text(columns.col_type[index]);
}

bool is_valid(const table_info* columns) {
  if (columns == nullptr) {
    return false;
  }
  for (int i = 0; i < columns->col_count; ++i) {
    if (!is_valid_column(*columns, i)) {
      return false;
    }
  }
  return true;
}

void set_column(table_info& columns, int index, const char* name, const char* type) {
  std::snprintf(columns.col_name[index], kColumnTextBytes, "%s", name);
  std::snprintf(columns.col_type[index], kColumnTextBytes, "%s", type);
}

std::string too_many_columns() {
  return "More than " + std::to_string(kMaxNewColumns) + " new columns";
}

}  // namespace orvaneip
