#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "cli/commands.h"
#include "cli/refusal.h"

namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

void describe(CLI::App& app) {
  app.description("Shows and changes the device configuration of the metadata service.");
  app.footer(
      "The vault database is /var/lib/orvane/vault.db, or the file that ORVANE_VAULT names.\n"
      "Exit status: 0 done, 1 refused or failed (the reason is on standard error), 2 wrong usage.");
  app.require_subcommand(1);
  app.fallthrough();
  app.add_flag_callback(
      "--log", [] { setenv("ORVANE_LOG", "stderr", 1); },
      "Show the log lines of the library on standard error");
  devcfg::add_data_source_commands(app);
  devcfg::add_filter_commands(app);
  devcfg::add_camera_commands(app);
}

}  // namespace

int main(int argc, char** argv) {
  std::setlocale(LC_ALL, "");
  setenv("ORVANE_LOG", "off", 0);
  CLI::App app("", "devcfg");
  describe(app);
  try {
    app.parse(argc, argv);
    return std::fflush(stdout) == 0 ? 0 : kFailed;
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kWrongUsage;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "devcfg: %s\n", error.what());
    return kFailed;
  }
}
