#include <langinfo.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "cli/commands.h"
#include "cli/output.h"
#include "cli/raw_arguments.h"
#include "cli/command_error.h"

namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;
constexpr char kExitStatus[] =
    "Exit status: 0 done, 1 refused or failed (the reason is on standard error), 2 wrong usage.";

// An argument that is taken for an option, but may be meant as a text.
std::string hint_at_dashes(const CLI::App& app) {
  for (const std::string& argument : app.remaining(true)) {
    if (argument.starts_with('-')) {
      return "\na text that begins with a dash stands behind --: -- " + argument;
    }
  }
  return "";
}

std::string failure_message(const CLI::App* app, const CLI::Error& error) {
  return devcfg::visible(std::string("devcfg: ") + error.what() + hint_at_dashes(*app)) +
         "\ndevcfg --help and devcfg COMMAND --help tell more\n";
}

void describe(CLI::App& app) {
  app.description(
      "Shows and changes the device configuration of the metadata service: its data sources\n"
      "(cameras, tills, doors), their camera channels and their text filters.");
  // A command without a footer of its own takes this one.
  app.footer(kExitStatus);
  app.require_subcommand(1);
  app.fallthrough();
  app.failure_message(failure_message);
  app.set_version_flag("--version", "devcfg " DEVCFG_VERSION, "Print the version and exit");
  app.add_flag_callback(
      "--log", [] { setenv("ORVANE_LOG", "stderr", 1); },
      "Show the log lines of the library on standard error");
  app.add_flag_callback(
      "--root", [] { throw CLI::CallForVersion(ORVANEIP_ROOT, 0); },
      "Print the prefix of the fixed paths that this build works on");
  devcfg::add_data_source_commands(app);
  devcfg::add_filter_commands(app);
  devcfg::add_camera_commands(app);
  devcfg::add_tree_commands(app);
  devcfg::add_rule_commands(app);
  devcfg::add_text_commands(app);
  devcfg::add_schema_commands(app);
  devcfg::add_service_commands(app);
  devcfg::add_frame_commands(app);
  devcfg::add_net_commands(app);
  // Last, since a subcommand takes over the footer that it finds.
  app.footer(
      "The vault database is /var/lib/orvane/vault.db, or the file that ORVANE_VAULT names.\n" +
      std::string(kExitStatus) +
      "\nA first try, with a vault of its own:\n"
      "  export ORVANE_VAULT=$PWD/try.db\n"
      "  devcfg add till-1 --type pos-serial --name \"Till 1\" --channel 0:cam-01:Entrance\n"
      "  devcfg list");
}

// Without a setting texts would be shown as bytes: the vault's are UTF-8.
void choose_locale() {
  std::setlocale(LC_ALL, "");
  if (std::strcmp(nl_langinfo(CODESET), "ANSI_X3.4-1968") == 0) {
    std::setlocale(LC_CTYPE, "C.UTF-8");
  }
}

int run(CLI::App& app, int argc, char** argv) {
  int status = 0;
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (app.exit(error) != 0) {
      return kWrongUsage;
    }
  } catch (const devcfg::NegativeAnswer&) {
    status = kFailed;
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
    CLI::App app("", "devcfg");
    describe(app);
    return run(app, argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "devcfg: %s\n", devcfg::visible(error.what()).c_str());
    return kFailed;
  }
}
