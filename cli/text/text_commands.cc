#include <memory>

#include "cli/commands.h"
#include "cli/output.h"
#include "cli/command_error.h"
#include "cli/text/text_stream.h"

namespace devcfg {
namespace {

struct FilterTextOptions {
  std::string id;
  bool whole = false;
  bool hits = false;
};

// Rules are read without a status: none may also mean that there is no such vault, or that it
// cannot be read.
void require_that_it_has_no_filters(const std::string& id) {
  CDataSource vault;
  std::vector<metadata_vault::DataSource> found;
  int status = vault.init();
  if (status == metadata_vault::kVaultOk) {
    status = vault.query_data_source(id, "", found);
  }
  vault.release();
  if (status != metadata_vault::kVaultOk) {
    throw Refusal("the vault database cannot be read", status);
  }
  if (found.empty()) {
    throw Refusal("there is no data source \"" + id + "\"");
  }
  if (!found.front().filter.empty()) {
    throw Refusal("the filters of \"" + id + "\" cannot be read");
  }
}

void filter_text(FilterTextOptions& options) {
  std::vector<rule> rules;
  const int rules_result = get_rule_list(options.id.data(), rules);
  if (rules_result == kDevcfgFailed) {
    throw Refusal("the ID is empty");
  }
  if (rules.empty() && rules_result == kDevcfgOk) {
    require_that_it_has_no_filters(options.id);
  }
  TextStream stream(rules);
  options.whole ? stream.filter_whole() : stream.filter_lines();
  if (options.hits) {
    stream.print_hits();
  }
  if (const std::size_t count = stream.limited_texts(); count > 0) {
    std::fprintf(stderr, "devcfg: more than 999 passes in %zu %s: occurrences may be left\n", count,
                 count == 1 ? "text" : "texts");
  }
  if (rules_result != kDevcfgOk) {
    throw Refusal("only the first " + std::to_string(rules.size()) + " filters were applied",
                  rules_result);
  }
}

void register_filter_text(CLI::App& app) {
  auto options = std::make_shared<FilterTextOptions>();
  CLI::App* command =
      app.add_subcommand("filter-text", "Apply the text filters of a data source to standard input")
          ->footer("Example:\n  devcfg filter-text till-1 --hits < receipts.txt > shorter.txt");
  command->add_option("ID", options->id, "The data source")->required();
  command->add_flag("--whole", options->whole,
                    "Filter the input as one text; otherwise each line is a text of its own");
  command->add_flag("--hits", options->hits,
                    "Print the number of replacements of each filter on standard error");
  command->callback([options] { filter_text(*options); });
}

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

void register_search(CLI::App& app) {
  CLI::App* family = app.add_subcommand("search", "Show what search text is turned into");
  family->require_subcommand(1);
  const char* const kText =
      "Terms separated by spaces; + stands for any text; \"a phrase\" is taken as it is; a text\n"
      "that begins with a dash stands behind --";
  auto like_options = std::make_shared<SearchOptions>();
  CLI::App* like = family->add_subcommand("like", "The SQL LIKE patterns, one a line");
  like->add_option("TEXT", like_options->text, kText)->required();
  like->add_flag("--json", like_options->json, "Print a JSON array");
  like->callback([like_options] { print_patterns(*like_options); });
  auto regex_options = std::make_shared<SearchOptions>();
  CLI::App* regex = family->add_subcommand("regex", "The document store's regular expression");
  regex->add_option("TEXT", regex_options->text, kText)->required();
  regex->add_flag("--json", regex_options->json, "Print a JSON string");
  regex->callback([regex_options] { print_expression(*regex_options); });
}

// metadata_remove has no status to tell, the store itself does.
void remove_metadata(const std::string& key) {
  CMetadata store;
  int status = store.init();
  if (status == metadata_vault::kVaultOk) {
    status = store.remove_metadata(key);
  }
  store.release();
  if (status != metadata_vault::kVaultOk) {
    throw Refusal("the metadata \"" + key + "\" was not removed", status);
  }
  std::printf("metadata %s removed\n", key.c_str());
}

void register_metadata(CLI::App& app) {
  CLI::App* family = app.add_subcommand("metadata", "Remove metadata");
  family->require_subcommand(1);
  auto key = std::make_shared<std::string>();
  CLI::App* remove = family->add_subcommand("remove", "Remove one piece of metadata");
  remove->add_option("KEY", *key, "Its key")->required();
  remove->callback([key] { remove_metadata(*key); });
}

}  // namespace

void add_text_commands(CLI::App& app) {
  register_filter_text(app);
  register_search(app);
  register_metadata(app);
}

}  // namespace devcfg
