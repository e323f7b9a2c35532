// devcfg search: the patterns made from a user's search text.
#include <cstdio>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "cli/output.h"
#include "orvaneip.h"

namespace devcfg {
namespace {

struct SearchOptions {
  std::string text;
  bool json = false;
};

void print_patterns(const SearchOptions& options) {
  std::vector<std::string> patterns;
  check_abnormal_char_for_special_for_SQL(options.text.c_str(), patterns);
  if (options.json) {
    const Json list(json_object_new_array());
    for (const std::string& pattern : patterns) {
      json_object_array_add(list.get(), json_object_new_string(pattern.c_str()));
    }
    print_json(list.get());
    return;
  }
  for (const std::string& pattern : patterns) {
    std::puts(pattern.c_str());
  }
}

void print_expression(const SearchOptions& options) {
  std::string expression;
  check_abnormal_char_for_special_for_mongo(options.text.c_str(), expression);
  if (options.json) {
    print_json(Json(json_text(expression)).get());
    return;
  }
  std::puts(expression.c_str());
}

void add_command(Command family, const char* name, const char* help, const char* json_help,
                 void (*run)(const SearchOptions&)) {
  const Command command = family.subcommand(name, help);
  SearchOptions& options = command.run(run);
  command.argument(
      "TEXT", options.text,
      "Terms separated by spaces; + matches any text; \"a phrase\" is matched as it is; put --\n"
      "before a text that begins with a dash");
  command.flag("--json", options.json, json_help);
}

}  // namespace

void add_search_commands(Command root) {
  const Command family = root.group("search", "Show the patterns made from search text");
  add_command(family, "like", "The SQL LIKE patterns, one a line", "Print a JSON array",
              print_patterns);
  add_command(family, "regex", "The document store's regular expression", "Print a JSON string",
              print_expression);
}

}  // namespace devcfg
