// Column lists of the tests.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "orvaneip.h"

namespace test {

struct ReleaseColumns {
  void operator()(table_info* columns) const { devcfg_del_tb_info(columns); }
};
using Columns = std::unique_ptr<table_info, ReleaseColumns>;
using Texts = std::vector<std::pair<std::string, std::string>>;  // names and types

inline Texts texts_of(const table_info& columns) {
  Texts texts;
  for (int i = 0; i < columns.col_count; ++i) {
    texts.emplace_back(columns.col_name[i], columns.col_type[i]);
  }
  return texts;
}

inline Columns make_columns(const Texts& texts) {
  Columns columns(static_cast<table_info*>(std::malloc(sizeof(table_info))));
  devcfg_init_tb_info(columns.get(), static_cast<int>(texts.size()));
  for (std::size_t i = 0; i < texts.size(); ++i) {
    texts[i].first.copy(columns->col_name[i], kColumnTextBytes);
    texts[i].second.copy(columns->col_type[i], kColumnTextBytes);
  }
  return columns;
}

inline Columns load(std::string path, std::string table) {
  return Columns(devcfg_load_table_schema(path.data(), table.data()));
}

}  // namespace test
