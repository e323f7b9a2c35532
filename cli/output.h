// Results on standard output: tables for people, JSON for programs.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/json.h"

struct libscols_table;

namespace devcfg {

// Prints the document, indented, and a line feed. Bytes that are not UTF-8 are printed as U+FFFD,
// so that it is valid JSON; then standard error says so.
void print_json(json_object* document);

// Prints the text, its control characters escaped but for line feeds, and a line feed.
void print_line(const std::string& text);

// The same on standard error, after "devcfg: ".
void report(const std::string& message);

inline const char* yes_or_no(bool value) { return value ? "yes" : "no"; }

// Returns the text in quotation marks.
std::string in_quotes(const std::string& text);

// Returns "1 filter", "2 filters", ...
std::string pluralize(std::size_t count, const std::string& noun);

// Throws CommandError when standard output was not written completely. Called once, at the end.
void finish_output();

// A table for a terminal. Columns are as wide as their cells; control characters are escaped.
class Table {
 public:
  explicit Table(const std::vector<std::string>& columns);
  // Returns a table of this many columns without a heading.
  static Table without_heading(std::size_t columns);

  // `cells`: one for each column.
  void add_row(const std::vector<std::string>& cells);
  void print() const;

 private:
  struct Release {
    void operator()(libscols_table* table) const;
  };
  std::unique_ptr<libscols_table, Release> table_;
};

}  // namespace devcfg
