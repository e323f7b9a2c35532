#include "cli/schema/lost_properties.h"

#include <cstdlib>

#include "cli/refusal.h"

namespace devcfg {
namespace {

using Lost = std::map<std::string, std::vector<std::string>>;

// The rows of one pragma about a table or an index of the wanted layout.
class PragmaRows {
 public:
  PragmaRows(const std::string& path, const char* pragma, const std::string& name) : db_(nullptr) {
    std::string argument;
    for (const char byte : name) {
      argument.append(byte == '\'' ? 2 : 1, byte);
    }
    const std::string sql = std::string("PRAGMA ") + pragma + "('" + argument + "')";
    if (!db_.openDatabase(path.c_str()) || !db_.QuerySQL(sql.c_str()) ||
        db_.result_table == nullptr) {
      throw Refusal("cannot read " + path);
    }
  }

  bool at_end() { return db_.QEof(); }
  void next() { db_.QNext(); }

  int number(const char* column) {
    int value = 0;
    db_.QGetIntegerByName(column, &value);
    return value;
  }

  // Empty for NULL.
  std::string text(const char* column) {
    char* value = nullptr;
    db_.QGetStringByName1(column, &value);
    std::string copy = value != nullptr ? value : "";
    std::free(value);
    return copy;
  }

 private:
  CSqlite db_;
};

// Blanks inside brackets belong to the first word.
bool has_more_words(const std::string& type) {
  const std::size_t end = type.find_first_of("( \t\n\r/-");
  return end != std::string::npos && type[end] != '(';
}

void add_own_properties(const std::string& path, const std::string& table, Lost& lost) {
  for (PragmaRows rows(path, "table_xinfo", table); !rows.at_end(); rows.next()) {
    std::vector<std::string> found;
    if (rows.number("pk") > 0) {
      found.emplace_back("PRIMARY KEY");
    }
    if (rows.number("notnull") != 0) {
      found.emplace_back("NOT NULL");
    }
    if (const std::string value = rows.text("dflt_value"); !value.empty()) {
      found.emplace_back("DEFAULT " + value);
    }
    if (rows.number("hidden") > 1) {
      found.emplace_back("GENERATED");
    }
    if (const std::string type = rows.text("type"); has_more_words(type)) {
      found.emplace_back("type " + type);
    }
    if (!found.empty()) {
      lost[rows.text("name")] = found;
    }
  }
}

void add_unique(const std::string& path, const std::string& table, Lost& lost) {
  for (PragmaRows indexes(path, "index_list", table); !indexes.at_end(); indexes.next()) {
    if (indexes.text("origin") != "u") {
      continue;
    }
    PragmaRows columns(path, "index_info", indexes.text("name"));
    for (; !columns.at_end(); columns.next()) {
      lost[columns.text("name")].emplace_back("UNIQUE");
    }
  }
}

void add_references(const std::string& path, const std::string& table, Lost& lost) {
  for (PragmaRows keys(path, "foreign_key_list", table); !keys.at_end(); keys.next()) {
    lost[keys.text("from")].emplace_back("REFERENCES " + keys.text("table"));
  }
}

}  // namespace

Lost read_lost_properties(const std::string& path, const std::string& table) {
  Lost lost;
  add_own_properties(path, table, lost);
  add_unique(path, table, lost);
  add_references(path, table, lost);
  return lost;
}

}  // namespace devcfg
