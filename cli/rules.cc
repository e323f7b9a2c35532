#include <algorithm>
#include <cstdio>
#include <iostream>
#include <string>

#include "base/ascii_case.h"
#include "base/fixed_paths.h"
#include "cli/command_error.h"
#include "cli/commands.h"
#include "cli/output.h"

namespace devcfg {
namespace {

// The longest result of a rule, as devcfg_match_filters requires.
constexpr int kOutputBytes = kRuleTextBytes + 1;

std::vector<dev_filter> read_devices() {
  std::vector<dev_filter> devices;
  if (devcfg_get_filter_rules_list(devices) != 0) {
    throw CommandError("the rule file cannot be read (--log shows why)");
  }
  return devices;
}

std::string state(int enable) { return enable != 0 ? "on" : "off"; }

void print_table(const std::vector<dev_filter>& devices) {
  Table table({"DEVICE", "FILTER", "STATE", "RULE", "TYPE", "STATE", "TARGET", "RESULT"});
  for (const dev_filter& device : devices) {
    for (const filter& entry : device.filter_list) {
      if (entry.rule_list.empty()) {
        table.add_row({device.device_id, entry.name, state(entry.enable), "", "", "", "", ""});
      }
      for (const rule& line : entry.rule_list) {
        table.add_row({device.device_id, entry.name, state(entry.enable), line.name,
                       std::to_string(line.type), state(line.enable), line.target, line.result});
      }
    }
  }
  table.print();
}

json_object* rule_object(const rule& line) {
  json_object* object = json_object_new_object();
  json_object_object_add(object, "name", json_object_new_string(line.name));
  json_object_object_add(object, "type", json_object_new_int(line.type));
  json_object_object_add(object, "enable", json_object_new_boolean(line.enable != 0));
  json_object_object_add(object, "target", json_object_new_string(line.target));
  json_object_object_add(object, "result", json_object_new_string(line.result));
  return object;
}

json_object* filter_object(const filter& entry) {
  json_object* object = json_object_new_object();
  json_object* rules = json_object_new_array();
  for (const rule& line : entry.rule_list) {
    json_object_array_add(rules, rule_object(line));
  }
  json_object_object_add(object, "name", json_object_new_string(entry.name));
  json_object_object_add(object, "enable", json_object_new_boolean(entry.enable != 0));
  json_object_object_add(object, "rules", rules);
  return object;
}

void print_document(const std::vector<dev_filter>& devices) {
  const Json list(json_object_new_array());
  for (const dev_filter& device : devices) {
    json_object* object = json_object_new_object();
    json_object* filters = json_object_new_array();
    for (const filter& entry : device.filter_list) {
      json_object_array_add(filters, filter_object(entry));
    }
    json_object_object_add(object, "device_id", json_object_new_string(device.device_id));
    json_object_object_add(object, "filters", filters);
    json_object_array_add(list.get(), object);
  }
  print_json(list.get());
}

void list(const bool& json) { (json ? print_document : print_table)(read_devices()); }

// Returns the line as the service gets it; the line break of a rule replaces that of the line.
std::string filtered(const std::string& line, const std::string& device_id,
                     const std::vector<dev_filter>& devices) {
  char output[kOutputBytes] = {};
  const bool is_text = line.find('\0') == std::string::npos;
  switch (is_text
              ? devcfg_match_filters(line.c_str(), output, kOutputBytes, device_id.c_str(), devices)
              : 0) {
    case 1:
      return std::string(output) + "\n";
    case 3:
      return output;
    default:
      return line + "\n";
  }
}

void report_unknown_device(const std::string& device_id, const std::vector<dev_filter>& devices) {
  if (std::none_of(devices.begin(), devices.end(), [&](const dev_filter& device) {
        return base::equal_ignoring_case(device.device_id, device_id);
      })) {
    report("there are no rules for " + device_id);
  }
}

void apply(const std::string& device_id) {
  const std::vector<dev_filter> devices = read_devices();
  report_unknown_device(device_id, devices);
  for (std::string line; std::getline(std::cin, line);) {
    const std::string text = filtered(line, device_id, devices);
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);  // the sender of a line may wait for its result
  }
  if (std::ferror(stdout) != 0) {
    throw CommandError("cannot write to standard output");
  }
}

}  // namespace

void add_rule_commands(Command root) {
  const Command rules = root.group("rules", "The rules for text from devices");
  rules.footer("The rule file is " + std::string(base::kRuleFilePath) +
               ", which is only read.\n"
               "Example:\n  devcfg rules apply till-1 < receipts.txt");

  const Command listed = rules.subcommand("list", "List the rules of the rule file");
  bool& json = listed.run(list);
  listed.flag("--json", json, "Print JSON");

  const Command applied =
      rules.subcommand("apply", "Apply the rules of a device to the lines of standard input");
  std::string& device_id = applied.run(apply);
  applied.argument("ID", device_id, "The device's identifier, in any letter case");
}

}  // namespace devcfg
