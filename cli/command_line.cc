#include "cli/command_line.h"

#include <CLI/CLI.hpp>

namespace devcfg {
namespace {

// Returns advice for an argument that was parsed as an option, but may be meant as a value.
std::string hint_at_dashes(const CLI::App& app) {
  for (const std::string& argument : app.remaining(true)) {
    if (argument.starts_with('-')) {
      return "\nput -- before an argument that begins with a dash: -- " + argument;
    }
  }
  return "";
}

CLI::Option* add_optional(CLI::App& app, const std::string& name, std::optional<std::string>& value,
                          const std::string& help) {
  return app.add_option_function<std::string>(
      name, [&value](const std::string& given) { value = given; }, help);
}

}  // namespace

Option Option::required() const { return Option(option_->required()); }

Option Option::needs(Option other) const { return Option(option_->needs(other.option_)); }

Option Option::excludes(Option other) const { return Option(option_->excludes(other.option_)); }

Option Option::check(Check check) const {
  return Option(option_->check(
      [check = std::move(check)](const std::string& value) { return check(value); }));
}

Option Option::value_name(const std::string& name) const {
  return Option(option_->type_name(name));
}

Command Command::subcommand(const std::string& name, const std::string& help) const {
  return Command(app_->add_subcommand(name, help));
}

Command Command::group(const std::string& name, const std::string& help) const {
  return Command(app_->add_subcommand(name, help)->require_subcommand(1));
}

void Command::footer(const std::string& text) const { app_->footer(text); }

Option Command::argument(const std::string& name, std::string& value,
                         const std::string& help) const {
  return Option(app_->add_option(name, value, help)->required());
}

Option Command::argument(const std::string& name, std::optional<std::string>& value,
                         const std::string& help) const {
  return Option(add_optional(*app_, name, value, help));
}

Option Command::argument(const std::string& name, std::vector<std::string>& values,
                         const std::string& help) const {
  return Option(app_->add_option(name, values, help)->required());
}

Option Command::option(const std::string& name, std::string& value, const std::string& help) const {
  return Option(app_->add_option(name, value, help));
}

Option Command::option(const std::string& name, std::optional<std::string>& value,
                       const std::string& help) const {
  return Option(add_optional(*app_, name, value, help));
}

Option Command::option(const std::string& name, std::vector<std::string>& values,
                       const std::string& help) const {
  return Option(app_->add_option(name, values, help)->allow_extra_args(false));
}

Option Command::option(const std::string& name, std::size_t& value, std::size_t lowest,
                       std::size_t highest, const std::string& help) const {
  return Option(app_->add_option(name, value, help)
                    ->check(CLI::Range(lowest, highest))
                    ->capture_default_str());
}

Option Command::flag(const std::string& name, bool& value, const std::string& help) const {
  return Option(app_->add_flag(name, value, help));
}

Option Command::flag(const std::string& name, std::function<void()> act,
                     const std::string& help) const {
  return Option(app_->add_flag_callback(name, std::move(act), help));
}

void Command::print_flag(const std::string& name, const std::string& text,
                         const std::string& help) const {
  app_->add_flag_callback(
      name, [text] { throw CLI::CallForVersion(text, 0); }, help);
}

void Command::run(std::function<void()> action) const { app_->callback(std::move(action)); }

CommandLine::CommandLine(const std::string& program, const std::string& help)
    : app_(std::make_unique<CLI::App>(help, program)) {
  app_->require_subcommand(1);
  app_->fallthrough();
}

CommandLine::~CommandLine() = default;

Command CommandLine::root() const { return Command(app_.get()); }

void CommandLine::run(int argc, char** argv) {
  try {
    app_->parse(argc, argv);
  } catch (const CLI::Success& answer) {
    app_->exit(answer);
  } catch (const CLI::ParseError& error) {
    throw UsageError(error.what() + hint_at_dashes(*app_));
  }
}

}  // namespace devcfg
