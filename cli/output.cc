#include "cli/output.h"

#include <libsmartcols/libsmartcols.h>

#include <cerrno>
#include <cstdio>
#include <iostream>
#include <new>
#include <system_error>

#include "base/control_characters.h"
#include "base/utf8.h"
#include "cli/command_error.h"

namespace devcfg {
namespace {

constexpr char kReplacementCharacter[] = "\uFFFD";

// Returns the text with U+FFFD for each byte that is not part of a UTF-8 character.
std::string valid_utf8(std::string_view text) {
  std::string valid;
  while (!text.empty()) {
    const auto [character, size_bytes] = base::decode_utf8(text);
    valid += character != base::kNotUtf8 ? text.substr(0, size_bytes) : kReplacementCharacter;
    text.remove_prefix(size_bytes);
  }
  return valid;
}

std::string escaped(const std::string& text) {
  return base::escape_control_characters(text, base::LineFeeds::kKeep);
}

}  // namespace

void print_json(json_object* document) {
  const std::string text = document_text(document);
  const std::string valid = valid_utf8(text);
  if (valid != text) {
    report("bytes that are not UTF-8 are printed as U+FFFD");
  }
  std::puts(valid.c_str());
}

void print_line(const std::string& text) { std::puts(escaped(text).c_str()); }

void report(const std::string& message) {
  std::fprintf(stderr, "devcfg: %s\n", escaped(message).c_str());
}

std::string in_quotes(const std::string& text) { return '"' + text + '"'; }

std::string pluralize(std::size_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

void finish_output() {
  std::cout.flush();
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0 || !std::cout) {
    throw CommandError("cannot write to standard output: " +
                       std::generic_category().message(errno));
  }
}

Table::Table(const std::vector<std::string>& columns) : table_(scols_new_table()) {
  if (table_ == nullptr) {
    throw std::bad_alloc();
  }
  for (const std::string& column : columns) {
    if (scols_table_new_column(table_.get(), column.c_str(), 0, 0) == nullptr) {
      throw std::bad_alloc();
    }
  }
}

Table Table::without_heading(std::size_t columns) {
  Table table(std::vector<std::string>(columns, " "));
  scols_table_enable_noheadings(table.table_.get(), 1);
  return table;
}

void Table::Release::operator()(libscols_table* table) const { scols_unref_table(table); }

void Table::add_row(const std::vector<std::string>& cells) {
  libscols_line* line = scols_table_new_line(table_.get(), nullptr);
  for (std::size_t column = 0; column < cells.size(); ++column) {
    if (line == nullptr || scols_line_set_data(line, column, cells[column].c_str()) != 0) {
      throw std::bad_alloc();
    }
  }
}

void Table::print() const {
  if (scols_print_table(table_.get()) != 0) {
    throw std::bad_alloc();
  }
}

}  // namespace devcfg
