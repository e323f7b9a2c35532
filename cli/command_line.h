// The command line: commands with their arguments, options and help are declared here. The parser
// is known to command_line.cc alone.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace devcfg {

// Wrong usage: exit status 2. Thrown by a command for what only the command itself can check.
class UsageError : public std::runtime_error {
 public:
  // `reason` in words, without a full stop.
  explicit UsageError(const std::string& reason) : std::runtime_error(reason) {}
};

// An argument or an option of a command. A copy names the same one.
class Option {
 public:
  explicit Option(CLI::Option* option) : option_(option) {}

  Option required() const;
  Option needs(Option other) const;
  Option excludes(Option other) const;

  // Returns "" for a valid value, otherwise what is wrong with it.
  using Check = std::function<std::string(const std::string& value)>;
  Option check(Check check) const;

  // Shown in the help in place of the value's type.
  Option value_name(const std::string& name) const;

 private:
  CLI::Option* option_;
};

// A command, its subcommands, arguments and options. They are shown in the help in the order in
// which they are declared. Every variable to which a value is bound must live until
// CommandLine::run returns. A copy names the same command.
class Command {
 public:
  explicit Command(CLI::App* app) : app_(app) {}

  // Adds a subcommand; without a footer of its own it has the one that this command has now.
  Command subcommand(const std::string& name, const std::string& help) const;
  // Adds a subcommand that only groups others: one of those has to be given.
  Command group(const std::string& name, const std::string& help) const;

  // The end of the help: examples, files, formats.
  void footer(const std::string& text) const;

  // Adds an argument that is known by its position: one that must be given, one that may be left
  // out, and one or more.
  Option argument(const std::string& name, std::string& value, const std::string& help) const;
  Option argument(const std::string& name, std::optional<std::string>& value,
                  const std::string& help) const;
  Option argument(const std::string& name, std::vector<std::string>& values,
                  const std::string& help) const;

  // Adds an option with a value; `name` includes the dashes. The value stays as it is when the
  // option is not given. An option with several values is given once for each.
  Option option(const std::string& name, std::string& value, const std::string& help) const;
  Option option(const std::string& name, std::optional<std::string>& value,
                const std::string& help) const;
  Option option(const std::string& name, std::vector<std::string>& values,
                const std::string& help) const;
  // The value is a number from `lowest` to `highest`; the help shows the default.
  Option option(const std::string& name, std::size_t& value, std::size_t lowest,
                std::size_t highest, const std::string& help) const;

  // Adds an option without a value, which sets `value` to true or acts before any command runs.
  Option flag(const std::string& name, bool& value, const std::string& help) const;
  Option flag(const std::string& name, std::function<void()> act, const std::string& help) const;
  // Adds an option that prints the text in place of running a command.
  void print_flag(const std::string& name, const std::string& text, const std::string& help) const;

  // Sets what the command does.
  void run(std::function<void()> action) const;
  // The same with values of its own, which are returned so that arguments and options can be bound
  // to them; they live as long as the command. `run<Values>` takes any callable.
  template <typename Values>
  Values& run(const std::function<void(const Values&)>& action) const {
    const auto values = std::make_shared<Values>();
    run([values, action] { action(*values); });
    return *values;
  }
  template <typename Values>
  Values& run(void (*action)(const Values&)) const {
    return run<Values>(std::function<void(const Values&)>(action));
  }

 private:
  CLI::App* app_;
};

// The command line of a program. One command has to be given.
class CommandLine {
 public:
  // `help`: what the program is for.
  CommandLine(const std::string& program, const std::string& help);
  ~CommandLine();
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;

  // The program itself. Its flags are known to all subcommands.
  Command root() const;

  // Parses the arguments of main and runs the command that they name, or prints the help or a text
  // that they ask for. Throws UsageError, and what the command throws.
  void run(int argc, char** argv);

 private:
  std::unique_ptr<CLI::App> app_;
};

}  // namespace devcfg
