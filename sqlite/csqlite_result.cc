// The result of a query: the cursor and the getters of CSqlite.
#include <sqlite3.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <optional>

#include "sqlite/csqlite.h"

namespace {

// Reading a result is mostly this comparison, and most names differ in their first byte.
bool equal(const char* left, const char* right) {
  return *left == *right && std::strcmp(left, right) == 0;
}

int find_column(const CSqlite& result, const char* column_name) {
  if (column_name == nullptr || result.result_table == nullptr) {
    return -1;
  }
  for (int index = 0; index < result.column_count; ++index) {
    const char* name = result.result_table[index];
    if (name != nullptr && equal(name, column_name)) {
      return index;
    }
  }
  return -1;
}

// Returns the cell of a column in the current row, or null when there is no such column or row. The
// cell itself is null for NULL.
char* const* find_cell(const CSqlite& result, const char* column_name) {
  const int column = find_column(result, column_name);
  if (column < 0 || result.cursor < 0 || result.cursor >= result.row_count) {
    return nullptr;
  }
  const auto row = static_cast<std::size_t>(result.cursor) + 1;
  return result.result_table + row * static_cast<std::size_t>(result.column_count) + column;
}

const char* find_text(const CSqlite& result, const char* column_name) {
  char* const* cell = find_cell(result, column_name);
  return cell != nullptr ? *cell : nullptr;
}

std::optional<long> find_number(const CSqlite& result, const char* column_name) {
  const char* text = find_text(result, column_name);
  if (text == nullptr || equal(text, "null")) {
    return std::nullopt;
  }
  return std::strtol(text, nullptr, 10);
}

template <typename Number>
bool get_number(const CSqlite& result, const char* column_name, Number* value) {
  const std::optional<long> number = find_number(result, column_name);
  if (!number || value == nullptr) {
    return false;
  }
  *value = static_cast<Number>(*number);
  return true;
}

}  // namespace

int CSqlite::QTotalRecords() { return row_count; }

bool CSqlite::QEof() { return cursor == row_count; }

void CSqlite::QNext() {
  if (cursor < row_count) {
    ++cursor;
  }
}

void CSqlite::QReset() { cursor = 0; }

int CSqlite::getColumnIndex(const char* column) { return find_column(*this, column); }

bool CSqlite::QGetIntegerByName(const char* column, int* value) {
  return get_number(*this, column, value);
}

bool CSqlite::QGetLongByName(const char* column, long* value) {
  return get_number(*this, column, value);
}

bool CSqlite::QGetStringByName(const char* column, char* buffer) {
  const char* text = find_text(*this, column);
  if (text == nullptr || buffer == nullptr) {
    return false;
  }
  std::memcpy(buffer, text, std::strlen(text) + 1);
  return true;
}

bool CSqlite::QGetStringByName1(const char* column, char** value) {
  char* const* cell = find_cell(*this, column);
  if (cell == nullptr || value == nullptr) {
    return false;
  }
  *value = nullptr;
  if (*cell == nullptr || **cell == '\0') {
    return false;
  }
  const std::size_t size_bytes = std::strlen(*cell) + 1;
  *value = static_cast<char*>(std::calloc(size_bytes, 1));
  if (*value == nullptr) {
    return false;
  }
  std::memcpy(*value, *cell, size_bytes);
  return true;
}

void CSqlite::freeResult() {
  sqlite3_free_table(result_table);
  result_table = nullptr;
}
