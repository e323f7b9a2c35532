#include "cli/command_error.h"
#include "cli/commands.h"
#include "cli/filters/filter_list.h"
#include "cli/json_file.h"
#include "cli/output.h"

namespace devcfg {
namespace {

struct ShowOptions {
  std::string id;
  bool json = false;
};

struct SetOptions {
  std::string id;
  std::string file;
};

void show(const ShowOptions& options) {
  const std::vector<Filter> filters = stored_data_source(options.id).filter;
  if (options.json) {
    print_json(Json(json_array(filters, filter_object)).get());
  } else {
    print_filters(filters);
  }
}

void set(const SetOptions& options) {
  const Json list = read_json_file(options.file);
  Problems problems;
  const std::vector<Filter> wanted = read_filter_list(list.get(), "", problems);
  problems.throw_if_any("the filter list of " + shown_name(options.file));
  std::string id = stored_data_source(options.id).vault_id;
  if (const int result = devcfg_modify_filter(id.data(), list.get()); result != kDevcfgOk) {
    throw CommandError("the filters of " + in_quotes(id) + " were not changed", result);
  }
  if (!same_filters(stored_data_source(id).filter, wanted)) {
    throw CommandError(not_stored("the filter list of " + in_quotes(id)));
  }
  print_line(pluralize(wanted.size(), "filter") + " set for " + id);
}

void add_show(Command family) {
  const Command command = family.subcommand("show", "Show the filters of a data source");
  ShowOptions& options = command.run(show);
  command.argument("ID", options.id, "The data source");
  command.flag("--json", options.json, "Print a JSON array, which filters set accepts");
  command.footer(
      "Example: give one data source the filters of another\n"
      "  devcfg filters show till-1 --json | devcfg filters set till-2 -");
}

void add_set(Command family) {
  const Command command = family.subcommand("set", "Replace all filters of a data source");
  SetOptions& options = command.run(set);
  command.argument("ID", options.id, "The data source");
  command.argument("FILE", options.file, "The filters; - is standard input");
  command.footer(
      "FILE is a JSON array; [] removes all filters:\n"
      "  [{\"type\": 0, \"target\": \"CARD 4\", \"result\": \"CARD ****\", "
      "\"name\": \"Card numbers\"}]\n"
      "A missing type is 0, a missing string empty. A target or a result has at most " +
      std::to_string(kMaxFilterTextBytes) +
      " bytes.\n"
      "Example:\n  devcfg filters set till-1 filters.json");
}

}  // namespace

void add_filter_commands(Command root) {
  const Command family =
      root.group("filters",
                 "Show or set the text filters of a data source: first to last, each\n"
                 "replaces its target by its result in incoming text");
  add_show(family);
  add_set(family);
}

}  // namespace devcfg
