#include "cli/schema/lost_properties.h"

#include <algorithm>
#include <cctype>
#include <set>

#include "base/ascii_case.h"
#include "base/sql_tokens.h"
#include "base/strings.h"
#include "cli/schema/table_reader.h"

namespace devcfg {
namespace {

using Words = std::vector<std::string>;
using Lost = std::map<std::string, Words>;

bool is_whitespace(char byte) { return std::isspace(static_cast<unsigned char>(byte)) != 0; }

// The type word is the declared type without whitespace, unless the type has more words.
bool has_more_words(const table_info& missing, const std::string& name, std::string type) {
  type.erase(std::remove_if(type.begin(), type.end(), is_whitespace), type.end());
  for (int i = 0; i < missing.col_count; ++i) {
    if (missing.col_name[i] == name) {
      return !base::equal_ignoring_case(missing.col_type[i], type);
    }
  }
  return false;
}

void add_own_properties(TableReader& table, const table_info& missing, Lost& lost) {
  table.query("c.*", "pragma_table_xinfo(m.name) c");
  for (; !table.at_end(); table.next()) {
    const std::string name = table.text("name");
    if (table.number("pk") > 0) {
      lost[name].emplace_back("PRIMARY KEY");
    }
    if (table.number("notnull") != 0) {
      lost[name].emplace_back("NOT NULL");
    }
    if (const std::string value = table.text("dflt_value"); !value.empty()) {
      lost[name].emplace_back("DEFAULT " + value);
    }
    if (table.number("hidden") > 1) {
      lost[name].emplace_back("GENERATED");
    }
    if (const std::string type = table.text("type"); has_more_words(missing, name, type)) {
      lost[name].emplace_back("type " + type);
    }
  }
}

void add_unique(TableReader& table, Lost& lost) {
  table.query("l.seq, l.origin, l.\"unique\", coalesce(i.name, 'an expression') AS name",
              "pragma_index_list(m.name) l, pragma_index_info(l.name) i");
  std::map<std::pair<int, std::string>, Words> indexes;
  for (; !table.at_end(); table.next()) {
    if (table.number("unique") != 0 && table.text("origin") != "pk") {
      const char* const kind = table.text("origin") == "u" ? "UNIQUE" : "UNIQUE INDEX";
      indexes[{table.number("seq"), kind}].push_back(table.text("name"));
    }
  }
  for (const auto& [index, columns] : indexes) {
    for (const std::string& column : columns) {
      lost[column].push_back(index.second +
                             (columns.size() > 1 ? " (" + base::join(columns, ", ") + ")" : ""));
    }
  }
}

void add_references(TableReader& table, Lost& lost) {
  table.query("f.*", "pragma_foreign_key_list(m.name) f");
  for (; !table.at_end(); table.next()) {
    std::string words = "REFERENCES " + table.text("table");
    for (const auto& [column, clause] :
         {std::pair("on_delete", " ON DELETE "), std::pair("on_update", " ON UPDATE ")}) {
      const std::string action = table.text(column);
      words += action != "NO ACTION" ? clause + action : "";
    }
    lost[table.text("from")].push_back(words);
  }
}

// Returns true when the statement has the keyword outside quotes and comments.
bool has_keyword(const std::string& sql, const char* keyword) {
  base::SqlTokens tokens(sql);
  for (base::SqlToken token = tokens.next(); !token.text.empty(); token = tokens.next()) {
    if (base::equal_ignoring_case(token.text, keyword)) {
      return true;
    }
  }
  return false;
}

Words table_properties(TableReader& table) {
  Words found;
  table.query("l.wr, l.strict, m.sql", "pragma_table_list(m.name) l");
  for (const auto& [column, words] :
       {std::pair("strict", "STRICT"), std::pair("wr", "WITHOUT ROWID")}) {
    if (table.number(column) != 0) {
      found.emplace_back(words);
    }
  }
  for (const char* keyword : {"AUTOINCREMENT", "CHECK", "COLLATE", "DEFERRABLE"}) {
    if (has_keyword(table.text("sql"), keyword)) {
      found.emplace_back(keyword);
    }
  }
  return found;
}

}  // namespace

LostProperties read_lost_properties(const std::string& path, const std::string& table,
                                    const table_info& missing) {
  TableReader reader(path, table);
  LostProperties lost;
  add_own_properties(reader, missing, lost.of_columns);
  add_unique(reader, lost.of_columns);
  add_references(reader, lost.of_columns);
  lost.of_table = table_properties(reader);
  return lost;
}

}  // namespace devcfg
