#include "schema/compare_schema.h"

#include <cstring>
#include <vector>

#include "platform/log_sinks.h"
#include "schema/internal/column_list.h"

namespace {

constexpr char kFunction[] = "devcfg_compare_table_schema";

bool has_column(const table_info& columns, const char* name) {
  for (int i = 0; i < columns.col_count; ++i) {
    if (std::strcmp(columns.col_name[i], name) == 0) {
      return true;
    }
  }
  return false;
}

std::vector<int> find_new(const table_info& current, const table_info& wanted) {
  std::vector<int> found;
  for (int i = 0; i < wanted.col_count; ++i) {
    if (!has_column(current, wanted.col_name[i])) {
      found.push_back(i);
    }
  }
  return found;
}

table_info* finish(orvaneip::ColumnList list, int count, int* new_count) {
  if (new_count != nullptr) {
    *new_count = list != nullptr ? count : -1;
  }
  return list.release();
}

table_info* refuse(const std::string& reason, int* new_count) {
  orvane_log_debug("[%s] %s", kFunction, reason.c_str());
  return finish(orvaneip::new_column_list(0), -1, new_count);
}

}  // namespace

table_info* devcfg_compare_table_schema(table_info* current, table_info* wanted, int* new_count) {
  if (!orvaneip::is_valid(current) || !orvaneip::is_valid(wanted)) {
    return refuse("A column list is missing or not valid", new_count);
  }
  const std::vector<int> found = find_new(*current, *wanted);
  if (found.size() > kMaxNewColumns) {
    return refuse(orvaneip::too_many_columns(), new_count);
  }
  const int count = static_cast<int>(found.size());
  orvaneip::ColumnList list = orvaneip::new_column_list(count);
  for (int i = 0; list != nullptr && i < count; ++i) {
    const int column = found[static_cast<std::size_t>(i)];
    orvaneip::set_column(*list, i, wanted->col_name[column], wanted->col_type[column]);
  }
  return finish(std::move(list), count, new_count);
}
