#include <unistd.h>

#include <cstdio>
#include <memory>

#include "base/ascii_case.h"
#include "base/control_characters.h"
#include "base/strings.h"
#include "cli/command_error.h"
#include "cli/commands.h"
#include "cli/output.h"
#include "cli/schema/lost_properties.h"
#include "cli/schema/table_reader.h"

namespace devcfg {
namespace {

struct ReleaseColumns {
  void operator()(table_info* columns) const { devcfg_del_tb_info(columns); }
};
using Columns = std::unique_ptr<table_info, ReleaseColumns>;

struct Options {
  std::string file;
  std::string table;
  std::string wanted_file;
  bool json = false;
  bool dry_run = false;
};

Columns load(std::string path, std::string table) {
  const TableReader readable(path, table);
  Columns columns(devcfg_load_table_schema(path.data(), table.data()));
  if (columns == nullptr) {
    throw CommandError("the columns of " + table + " in " + path +
                       " cannot be read (--log shows why)");
  }
  return columns;
}

Columns compare(table_info& current, table_info& wanted) {
  int count = -1;
  Columns missing(devcfg_compare_table_schema(&current, &wanted, &count));
  if (missing == nullptr || count < 0) {
    throw CommandError("more than " + std::to_string(kMaxNewColumns) + " columns are missing");
  }
  return missing;
}

// Returns the column that makes SQLite reject the name, since it ignores letter case; or null.
const char* find_clash(const table_info& current, const char* name) {
  for (int i = 0; i < current.col_count; ++i) {
    if (base::equal_ignoring_case(current.col_name[i], name)) {
      return current.col_name[i];
    }
  }
  return nullptr;
}

std::string describe_clash(const char* present) {
  return std::string("SQLite does not distinguish it from column ") + present;
}

json_object* column_object(const table_info& columns, int index) {
  json_object* object = json_object_new_object();
  json_object_object_add(object, "name", json_text(columns.col_name[index]));
  json_object_object_add(object, "type", json_text(columns.col_type[index]));
  return object;
}

void show(const Options& options) {
  const Columns columns = load(options.file, options.table);
  const Json array(json_object_new_array());
  Table table({"COLUMN", "TYPE"});
  for (int i = 0; i < columns->col_count; ++i) {
    json_object_array_add(array.get(), column_object(*columns, i));
    table.add_row({columns->col_name[i], columns->col_type[i]});
  }
  options.json ? print_json(array.get()) : table.print();
}

void print_missing(const table_info& missing, LostProperties& lost, bool json) {
  const Json array(json_object_new_array());
  Table table({"MISSING COLUMN", "TYPE", "CANNOT BE ADDED"});
  for (int i = 0; i < missing.col_count; ++i) {
    const std::vector<std::string>& properties = lost.of_columns[missing.col_name[i]];
    json_object* object = column_object(missing, i);
    json_object_object_add(object, "lost", json_array(properties, json_text));
    json_object_array_add(array.get(), object);
    table.add_row({missing.col_name[i], missing.col_type[i], base::join(properties, ", ")});
  }
  if (json) {
    print_json(array.get());
  } else if (missing.col_count > 0) {
    table.print();
  }
}

void diff(const Options& options) {
  const Columns current = load(options.file, options.table);
  const Columns wanted = load(options.wanted_file, options.table);
  const Columns missing = compare(*current, *wanted);
  LostProperties lost = read_lost_properties(options.wanted_file, options.table, *missing);
  for (int i = 0; i < missing->col_count; ++i) {
    if (const char* present = find_clash(*current, missing->col_name[i])) {
      lost.of_columns[missing->col_name[i]] = {"the column: " + describe_clash(present)};
    }
  }
  print_missing(*missing, lost, options.json);
  if (missing->col_count > 0) {
    if (!lost.of_table.empty()) {
      report("the wanted table also has what added columns do not get: " +
             base::join(lost.of_table, ", "));
    }
    throw NegativeAnswer();
  }
}

std::vector<std::string> upgrade_statements(const Options& options, const table_info& current,
                                            const table_info& missing) {
  for (int i = 0; i < missing.col_count; ++i) {
    if (const char* present = find_clash(current, missing.col_name[i])) {
      throw CommandError(std::string("column ") + missing.col_name[i] +
                         " cannot be added: " + describe_clash(present) + "; nothing was changed");
    }
  }
  std::vector<std::string> statements;
  if (devcfg_upgrade_statements(&missing, options.table.c_str(), statements) != 0) {
    throw CommandError("a missing column cannot be added, nothing was changed (--log shows which)");
  }
  return statements;
}

// Columns are added in order, so the first one that is still missing is the one that failed.
CommandError partial_upgrade(const Options& options, const table_info& missing) {
  const Columns current = load(options.file, options.table);
  int added = 0;
  while (added + 1 < missing.col_count &&
         find_clash(*current, missing.col_name[added]) != nullptr) {
    ++added;
  }
  return CommandError(
      std::string("column ") + missing.col_name[added] +
      " could not be added (--log shows why); added before it: " + std::to_string(added));
}

// Prints the statement as it runs; for a terminal its control characters are escaped.
void print_statement(std::string statement) {
  statement.erase(statement.find_last_not_of(' ') + 1);
  const std::string line = statement + ";";
  std::puts((isatty(STDOUT_FILENO) != 0
                 ? base::escape_control_characters(line, base::LineFeeds::kKeep)
                 : line)
                .c_str());
}

void upgrade(const Options& options) {
  const Columns current = load(options.file, options.table);
  const Columns wanted = load(options.wanted_file, options.table);
  const Columns missing = compare(*current, *wanted);
  const std::vector<std::string> statements = upgrade_statements(options, *current, *missing);
  std::string file = options.file, table = options.table;
  if (!options.dry_run && devcfg_update_table(missing.get(), table.data(), file.data()) != 0) {
    throw partial_upgrade(options, *missing);
  }
  for (const std::string& statement : statements) {
    print_statement(statement);
  }
}

struct TableCommand {
  Command command;
  Options& options;
};

TableCommand add_command(Command family, const char* name, const char* help,
                         void (*run)(const Options&)) {
  const Command command = family.subcommand(name, help);
  Options& options = command.run(run);
  command.argument("file", options.file, "The SQLite database file");
  command.argument("table", options.table, "The table, exactly as it is named");
  return {command, options};
}

void add_wanted_file(const TableCommand& added) {
  added.command.argument("wanted_file", added.options.wanted_file,
                         "A database with the wanted table");
}

void add_json(const TableCommand& added) {
  added.command.flag("--json", added.options.json, "Print JSON");
}

}  // namespace

void add_schema_commands(Command root) {
  const Command family = root.group("schema", "Columns of an SQLite table");
  add_json(add_command(family, "show", "List the columns of a table", show));

  const TableCommand compared =
      add_command(family, "diff",
                  "List the columns that a table lacks; exit status 1 when there are any", diff);
  add_wanted_file(compared);
  add_json(compared);

  const TableCommand upgraded = add_command(
      family, "upgrade", "Add the columns that a table lacks, and print the statements", upgrade);
  add_wanted_file(upgraded);
  upgraded.command.flag("--dry-run", upgraded.options.dry_run,
                        "Print the statements, change nothing");
}

}  // namespace devcfg
