#include <unistd.h>

#include <cstdio>
#include <memory>

#include "cli/commands.h"
#include "cli/output.h"
#include "cli/command_error.h"
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
    throw Refusal("the columns of " + table + " in " + path + " cannot be read (--log tells why)");
  }
  return columns;
}

Columns compare(table_info& current, table_info& wanted) {
  int count = -1;
  Columns missing(devcfg_compare_table_schema(&current, &wanted, &count));
  if (missing == nullptr || count < 0) {
    throw Refusal("more than " + std::to_string(kMaxNewColumns) + " columns are missing");
  }
  return missing;
}

// The column that makes SQLite refuse the name: it does not tell apart the case of letters.
const char* find_clash(const table_info& current, const char* name) {
  for (int i = 0; i < current.col_count; ++i) {
    if (is_same_name(current.col_name[i], name)) {
      return current.col_name[i];
    }
  }
  return nullptr;
}

std::string clash_text(const char* present) {
  return std::string("SQLite takes its name for the column ") + present;
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
    table.add_row({missing.col_name[i], missing.col_type[i], joined(properties)});
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
      lost.of_columns[missing->col_name[i]] = {"the column: " + clash_text(present)};
    }
  }
  print_missing(*missing, lost, options.json);
  if (missing->col_count > 0) {
    if (!lost.of_table.empty()) {
      std::fprintf(stderr, "devcfg: the wanted table also has, and added columns do not get: %s\n",
                   joined(lost.of_table).c_str());
    }
    throw NegativeAnswer();
  }
}

std::vector<std::string> upgrade_statements(const Options& options, const table_info& current,
                                            const table_info& missing) {
  for (int i = 0; i < missing.col_count; ++i) {
    if (const char* present = find_clash(current, missing.col_name[i])) {
      throw Refusal(std::string("column ") + missing.col_name[i] +
                    " cannot be added: " + clash_text(present) + "; nothing was changed");
    }
  }
  std::vector<std::string> statements;
  if (devcfg_upgrade_statements(&missing, options.table.c_str(), statements) != 0) {
    throw Refusal("a missing column cannot be added, nothing was changed (--log tells which)");
  }
  return statements;
}

// Columns are added in their order, so the first one that is still missing is the one that failed.
Refusal partial_upgrade(const Options& options, const table_info& missing) {
  const Columns current = load(options.file, options.table);
  int added = 0;
  while (added + 1 < missing.col_count &&
         find_clash(*current, missing.col_name[added]) != nullptr) {
    ++added;
  }
  return Refusal(
      std::string("column ") + missing.col_name[added] +
      " could not be added (--log tells why); added before it: " + std::to_string(added));
}

// As it runs, but for what a terminal would obey.
void print_statement(std::string statement) {
  statement.erase(statement.find_last_not_of(' ') + 1);
  const std::string line = statement + ";";
  std::puts((isatty(STDOUT_FILENO) != 0 ? visible(line) : line).c_str());
}

void upgrade(Options options) {
  const Columns current = load(options.file, options.table);
  const Columns wanted = load(options.wanted_file, options.table);
  const Columns missing = compare(*current, *wanted);
  const std::vector<std::string> statements = upgrade_statements(options, *current, *missing);
  if (!options.dry_run &&
      devcfg_update_table(missing.get(), options.table.data(), options.file.data()) != 0) {
    throw partial_upgrade(options, *missing);
  }
  for (const std::string& statement : statements) {
    print_statement(statement);
  }
}

CLI::App* add_command(CLI::App& family, const char* name, const char* description,
                      const std::shared_ptr<Options>& options, void (*run)(const Options&)) {
  CLI::App* command = family.add_subcommand(name, description);
  command->add_option("file", options->file, "The SQLite database file")->required();
  command->add_option("table", options->table, "The table, exactly as it is named")->required();
  command->callback([options, run] { run(*options); });
  return command;
}

void add_wanted_file(CLI::App* command, const std::shared_ptr<Options>& options) {
  command->add_option("wanted_file", options->wanted_file, "A database with the wanted table")
      ->required();
}

}  // namespace

void add_schema_commands(CLI::App& app) {
  const auto options = std::make_shared<Options>();
  CLI::App* family = app.add_subcommand("schema", "Columns of an SQLite table");
  family->require_subcommand(1);

  CLI::App* shown = add_command(*family, "show", "List the columns of a table", options, show);
  CLI::App* compared = add_command(
      *family, "diff", "List the columns that a table lacks; exit status 1 when there are any",
      options, diff);
  add_wanted_file(compared, options);
  for (CLI::App* command : {shown, compared}) {
    command->add_flag("--json", options->json, "Print JSON");
  }
  CLI::App* upgraded = add_command(*family, "upgrade",
                                   "Add the columns that a table lacks, and print the statements",
                                   options, [](const Options& chosen) { upgrade(chosen); });
  add_wanted_file(upgraded, options);
  upgraded->add_flag("--dry-run", options->dry_run, "Print the statements, change nothing");
}

}  // namespace devcfg
