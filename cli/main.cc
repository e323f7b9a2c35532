#include <langinfo.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/fixed_paths.h"
#include "cli/command_error.h"
#include "cli/commands.h"
#include "cli/exit_status.h"
#include "cli/output.h"
#include "cli/raw_arguments.h"

namespace {

constexpr char kDescription[] =
    "Shows and changes the device configuration of the metadata service: its data sources\n"
    "(cameras, tills, doors), their camera channels and their text filters.";

void add_flags(devcfg::Command root) {
  root.print_flag("--version", "devcfg " DEVCFG_VERSION, "Print the version and exit");
  root.flag(
      "--log", [] { setenv("ORVANE_LOG", "stderr", 1); },
      "Show the log lines of the library on standard error");
  root.print_flag("--root", ORVANEIP_ROOT,
                  "Print the prefix of the fixed paths that this build works on");
}

void add_commands(devcfg::Command root) {
  devcfg::add_data_source_commands(root);
  devcfg::add_filter_commands(root);
  devcfg::add_camera_commands(root);
  devcfg::add_event_commands(root);
  devcfg::add_tree_commands(root);
  devcfg::add_rule_commands(root);
  devcfg::add_text_commands(root);
  devcfg::add_search_commands(root);
  devcfg::add_metadata_commands(root);
  devcfg::add_schema_commands(root);
  devcfg::add_service_commands(root);
  devcfg::add_frame_commands(root);
  devcfg::add_net_commands(root);
}

void declare(devcfg::Command root) {
  // The footer of a command without its own.
  root.footer(devcfg::kExitStatusHelp);
  add_flags(root);
  add_commands(root);
  // After the subcommands, since they have the footer that is set when they are added.
  root.footer(
      "The vault database is " + std::string(base::kDefaultVaultPath) +
      ", or the file that ORVANE_VAULT names.\n" + std::string(devcfg::kExitStatusHelp) +
      "\nA first try, with a vault of its own:\n"
      "  export ORVANE_VAULT=$PWD/try.db\n"
      "  devcfg add till-1 --type pos-serial --name \"Till 1\" --channel 0:cam-01:Entrance\n"
      "  devcfg list");
}

// In the C locale the table would show UTF-8 as bytes.
void choose_locale() {
  std::setlocale(LC_ALL, "");
  if (std::strcmp(nl_langinfo(CODESET), "ANSI_X3.4-1968") == 0) {
    std::setlocale(LC_CTYPE, "C.UTF-8");
  }
}

int run(int argc, char** argv) {
  devcfg::CommandLine command_line("devcfg", kDescription);
  declare(command_line.root());
  int status = 0;
  try {
    command_line.run(argc, argv);
  } catch (const devcfg::NegativeAnswer&) {
    status = devcfg::kExitFailed;
  }
  devcfg::finish_output();
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  choose_locale();
  devcfg::raw_arguments.assign(argv, argv + argc);
  setenv("ORVANE_LOG", "off", 0);
  try {
    return run(argc, argv);
  } catch (const devcfg::UsageError& error) {
    devcfg::report(error.what());
    std::fputs("see devcfg --help and devcfg COMMAND --help\n", stderr);
    return devcfg::kExitWrongUsage;
  } catch (const std::exception& error) {
    devcfg::report(error.what());
    return devcfg::kExitFailed;
  }
}
