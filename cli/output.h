// Results on standard output: tables for people, JSON for programs.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/json.h"

struct libscols_table;

namespace devcfg {

// Prints the document, indented, and a line feed. What is not UTF-8 in its texts is shown as
// U+FFFD, so that it is valid JSON, and standard error tells so.
void print_json(json_object* document);

// Prints the text, its control characters escaped but for line feeds, and a line feed.
void print_line(const std::string& text);

// The same on standard error, after "devcfg: ".
void report(const std::string& message);

inline const char* yes_or_no(bool value) { return value ? "yes" : "no"; }

// The text between quotation marks.
std::string in_quotes(const std::string& text);

// "1 filter", "2 filters"
std::string counted(std::size_t count, const std::string& noun);

// Reports what standard output has not taken as a Refusal. Called once, at the end.
void finish_output();

// A table for a terminal. Columns are as wide as their texts; control characters are made visible.
class Table {
 public:
  explicit Table(const std::vector<std::string>& columns);
  // A table of this many columns without a heading.
  static Table without_heading(std::size_t columns);

  // One text for each column.
  void add_row(const std::vector<std::string>& texts);
  void print() const;

 private:
  struct Release {
    void operator()(libscols_table* table) const;
  };
  std::unique_ptr<libscols_table, Release> table_;
};

}  // namespace devcfg
