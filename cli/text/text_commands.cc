#include "cli/command_error.h"
#include "cli/commands.h"
#include "cli/output.h"
#include "cli/text/text_stream.h"
#include "cli/vault.h"

namespace devcfg {
namespace {

struct FilterTextOptions {
  std::string id;
  bool whole = false;
  bool hits = false;
};

// No rules may also mean that there is no such data source, or that the vault cannot be read.
void require_no_filters(const std::string& id) {
  if (!stored_data_source(id).filter.empty()) {
    throw CommandError("the filters of " + in_quotes(id) + " cannot be read");
  }
}

void filter_text(const FilterTextOptions& options) {
  std::string id = options.id;
  std::vector<rule> rules;
  const int rules_result = get_rule_list(id.data(), rules);
  if (rules_result == kDevcfgFailed) {
    throw CommandError("the ID is empty");
  }
  if (rules.empty() && rules_result == kDevcfgOk) {
    require_no_filters(id);
  }
  TextStream stream(rules);
  options.whole ? stream.filter_whole() : stream.filter_lines();
  if (options.hits) {
    stream.print_hits();
  }
  if (const std::size_t count = stream.limited_texts(); count > 0) {
    report("more than " + std::to_string(kMaxFilterPasses) + " passes in " +
           pluralize(count, "text") + ": occurrences may be left");
  }
  if (rules_result != kDevcfgOk) {
    throw CommandError("only the first " + std::to_string(rules.size()) + " filters were applied",
                       rules_result);
  }
}

}  // namespace

void add_text_commands(Command root) {
  const Command command =
      root.subcommand("filter-text", "Apply the text filters of a data source to standard input");
  FilterTextOptions& options = command.run(filter_text);
  command.argument("ID", options.id, "The data source");
  command.flag("--whole", options.whole,
               "Filter the input as one text; otherwise each line is a text of its own");
  command.flag("--hits", options.hits,
               "Print the number of replacements of each filter on standard error");
  command.footer("Example:\n  devcfg filter-text till-1 --hits < receipts.txt > shorter.txt");
}

}  // namespace devcfg
