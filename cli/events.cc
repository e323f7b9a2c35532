// devcfg events: the active events.
#include <cstdio>
#include <string>
#include <vector>

#include "cli/command_error.h"
#include "cli/commands.h"
#include "cli/output.h"
#include "orvaneip.h"

namespace devcfg {
namespace {

// A platform may lack the functions that show and add events.
void require(bool exists) {
  if (!exists) {
    throw CommandError("the events", metadata_vault::kVaultUnsupported);
  }
}

void list(const bool& json) {
  require(aevt_list_events != nullptr);
  std::vector<std::string> ids;
  if (const int status = aevt_list_events(ids); status != metadata_vault::kVaultOk) {
    throw CommandError("the events cannot be read", status);
  }
  if (json) {
    print_json(Json(json_array(ids, json_text)).get());
    return;
  }
  for (const std::string& id : ids) {
    print_line(id);
  }
  if (ids.empty()) {
    print_line("no active events");
  }
}

void add(const std::string& id) {
  require(aevt_add_event != nullptr);
  if (const int status = aevt_add_event(id); status != metadata_vault::kVaultOk) {
    throw CommandError("the event " + in_quotes(id) + " was not added", status);
  }
  print_line("event " + id + " is active");
}

void remove(const std::string& id) {
  if (aevt_remove_event(id) == 0) {
    throw CommandError("the event " + in_quotes(id) +
                       " is not active, or was not removed (--log shows why)");
  }
  print_line("removed event " + id);
}

}  // namespace

void add_event_commands(Command root) {
  const Command family = root.group("events", "Show, add and remove active events");

  Command command = family.subcommand("list", "List the ids of the active events");
  command.flag("--json", command.run(list), "Print a JSON array");

  command = family.subcommand("add", "Make an event active");
  command.argument("ID", command.run(add), "Its id");
  command.footer("Example:\n  devcfg events add door-open-7");

  command = family.subcommand("remove", "Remove an active event");
  command.argument("ID", command.run(remove), "Its id");
}

}  // namespace devcfg
