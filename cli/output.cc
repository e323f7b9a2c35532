#include "cli/output.h"

#include <boost/locale/utf.hpp>
#include <libsmartcols/libsmartcols.h>

#include <cerrno>
#include <cstdio>
#include <iostream>
#include <new>
#include <system_error>

#include "cli/command_error.h"

namespace devcfg {
namespace {

bool is_control(unsigned char byte) { return (byte < 0x20 && byte != '\n') || byte == 0x7F; }

// U+0080 to U+009F, which some terminals obey, are 0xC2 and a byte below 0xA0.
bool is_control_pair(unsigned char first, unsigned char second) {
  return first == 0xC2 && second >= 0x80 && second < 0xA0;
}

void append_escaped(std::string& text, unsigned char byte) {
  constexpr char kDigits[] = "0123456789abcdef";
  text += "\\x";
  text += kDigits[byte >> 4];
  text += kDigits[byte & 0x0F];
}

// Puts U+FFFD in the place of each byte that is no part of a character. False when there is none.
bool replace_what_is_not_utf8(std::string& text) {
  using Utf8 = boost::locale::utf::utf_traits<char>;
  std::string valid;
  for (auto next = text.cbegin(); next != text.cend();) {
    const auto start = next;
    const boost::locale::utf::code_point character = Utf8::decode(next, text.cend());
    if (boost::locale::utf::is_valid_codepoint(character)) {
      valid.append(start, next);
    } else {
      valid += "\uFFFD";
      next = start + 1;
    }
  }
  const bool replaced = valid != text;
  text = std::move(valid);
  return replaced;
}

}  // namespace

void print_json(json_object* document) {
  std::string text = document_text(document);
  if (replace_what_is_not_utf8(text)) {
    std::fputs("devcfg: U+FFFD stands for bytes that are not UTF-8\n", stderr);
  }
  std::puts(text.c_str());
}

std::string visible(const std::string& text) {
  std::string shown;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (i + 1 < text.size() && is_control_pair(byte, static_cast<unsigned char>(text[i + 1]))) {
      append_escaped(shown, byte);
      append_escaped(shown, static_cast<unsigned char>(text[++i]));
    } else if (is_control(byte)) {
      append_escaped(shown, byte);
    } else {
      shown += text[i];
    }
  }
  return shown;
}

void print_line(const std::string& text) { std::puts(visible(text).c_str()); }

std::string joined(const std::vector<std::string>& texts) {
  std::string line;
  for (const std::string& text : texts) {
    line += (line.empty() ? "" : ", ") + text;
  }
  return line;
}

std::string counted(std::size_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

void finish_output() {
  std::cout.flush();
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0 || !std::cout) {
    throw Refusal("cannot write to standard output: " + std::generic_category().message(errno));
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

void Table::add_row(const std::vector<std::string>& texts) {
  libscols_line* line = scols_table_new_line(table_.get(), nullptr);
  for (std::size_t column = 0; column < texts.size(); ++column) {
    if (line == nullptr || scols_line_set_data(line, column, texts[column].c_str()) != 0) {
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
