// Results on standard output: tables for people, JSON for programs.
#pragma once

#include <json-c/json.h>

#include <memory>
#include <string>
#include <vector>

struct libscols_table;

namespace devcfg {

struct JsonRelease {
  void operator()(json_object* object) const { json_object_put(object); }
};
using Json = std::unique_ptr<json_object, JsonRelease>;

// Prints the document, indented, and a line feed.
void print_json(json_object* document);

// A table for a terminal. Columns are as wide as their texts; control characters are made visible.
class Table {
 public:
  explicit Table(const std::vector<std::string>& columns);
  ~Table();
  Table(const Table&) = delete;
  Table& operator=(const Table&) = delete;

  // One text for each column.
  void add_row(const std::vector<std::string>& texts);
  void print() const;

 private:
  libscols_table* table_;
};

}  // namespace devcfg
