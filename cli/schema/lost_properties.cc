#include "cli/schema/lost_properties.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <set>

#include "cli/output.h"
#include "cli/schema/table_reader.h"

namespace devcfg {
namespace {

using Texts = std::vector<std::string>;
using Lost = std::map<std::string, Texts>;

bool is_in_word(char byte) {
  return std::isalnum(static_cast<unsigned char>(byte)) != 0 || byte == '_';
}

bool is_blank(char byte) { return std::isspace(static_cast<unsigned char>(byte)) != 0; }

// The type word is the declared type without blanks, unless the type has more words.
bool has_more_words(const table_info& missing, const std::string& name, std::string type) {
  type.erase(std::remove_if(type.begin(), type.end(), is_blank), type.end());
  for (int i = 0; i < missing.col_count; ++i) {
    if (missing.col_name[i] == name) {
      return !is_same_name(missing.col_type[i], type);
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
  std::map<std::pair<int, std::string>, Texts> indexes;
  for (; !table.at_end(); table.next()) {
    if (table.number("unique") != 0 && table.text("origin") != "pk") {
      const char* const kind = table.text("origin") == "u" ? "UNIQUE" : "UNIQUE INDEX";
      indexes[{table.number("seq"), kind}].push_back(table.text("name"));
    }
  }
  for (const auto& [index, columns] : indexes) {
    for (const std::string& column : columns) {
      lost[column].push_back(index.second +
                             (columns.size() > 1 ? " (" + joined(columns) + ")" : ""));
    }
  }
}

void add_references(TableReader& table, Lost& lost) {
  table.query("f.*", "pragma_foreign_key_list(m.name) f");
  for (; !table.at_end(); table.next()) {
    std::string text = "REFERENCES " + table.text("table");
    for (const auto& [column, words] :
         {std::pair("on_delete", " ON DELETE "), std::pair("on_update", " ON UPDATE ")}) {
      const std::string action = table.text(column);
      text += action != "NO ACTION" ? words + action : "";
    }
    lost[table.text("from")].push_back(text);
  }
}

// Where the token ends that begins at `position`: a quoted text, a comment, a word or a single
// byte.
std::size_t end_of_token(const std::string& sql, std::size_t position) {
  const auto behind = [&sql](const std::string& mark, std::size_t from) {
    const std::size_t found = sql.find(mark, from);
    return found != std::string::npos ? found + mark.size() : sql.size();
  };
  const char first = sql[position];
  if (sql.compare(position, 2, "--") == 0) {
    return behind("\n", position);
  }
  if (sql.compare(position, 2, "/*") == 0) {
    return behind("*/", position + 2);
  }
  if (std::strchr("'\"`[", first) != nullptr) {
    return behind(std::string(1, first == '[' ? ']' : first), position + 1);
  }
  const auto end =
      std::find_if_not(sql.begin() + static_cast<std::ptrdiff_t>(position), sql.end(), is_in_word);
  return std::max(static_cast<std::size_t>(end - sql.begin()), position + 1);
}

// True when the keyword stands in the statement, and not only inside quotes or a comment.
bool has_keyword(const std::string& sql, const char* keyword) {
  for (std::size_t start = 0, end = 0; start < sql.size(); start = end) {
    end = end_of_token(sql, start);
    if (is_same_name(sql.substr(start, end - start), keyword)) {
      return true;
    }
  }
  return false;
}

Texts table_properties(TableReader& table) {
  Texts found;
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
