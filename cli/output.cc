#include "cli/output.h"

#include <libsmartcols/libsmartcols.h>

#include <cstdio>
#include <new>

namespace devcfg {

void print_json(json_object* document) {
  std::puts(json_object_to_json_string_ext(document, JSON_C_TO_STRING_PRETTY |
                                                         JSON_C_TO_STRING_SPACED |
                                                         JSON_C_TO_STRING_NOSLASHESCAPE));
}

Table::Table(const std::vector<std::string>& columns) : table_(scols_new_table()) {
  if (table_ == nullptr) {
    throw std::bad_alloc();
  }
  for (const std::string& column : columns) {
    scols_table_new_column(table_, column.c_str(), 0, 0);
  }
}

Table::~Table() { scols_unref_table(table_); }

void Table::add_row(const std::vector<std::string>& texts) {
  libscols_line* line = scols_table_new_line(table_, nullptr);
  for (std::size_t column = 0; line != nullptr && column < texts.size(); ++column) {
    scols_line_set_data(line, column, texts[column].c_str());
  }
}

void Table::print() const {
  std::fflush(stdout);
  scols_print_table(table_);
}

}  // namespace devcfg
