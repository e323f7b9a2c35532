// The subcommand families of devcfg; each is registered by one function, in a file or a directory
// of its own.
//
// A command does its work on exported functions only. It prints its result on standard output and
// returns, or throws: CommandError for "refused or failed" (exit status 1), NegativeAnswer (the
// same without a message), UsageError for wrong usage (exit status 2).
#pragma once

#include "cli/command_line.h"

namespace devcfg {

void add_data_source_commands(Command root);  // data_sources/: add list show modify remove ...
void add_filter_commands(Command root);       // filters/: filters show|set
void add_camera_commands(Command root);       // cameras.cc: camera removed|renamed
void add_event_commands(Command root);        // events.cc: events list|add|remove
void add_tree_commands(Command root);         // tree/: tree init|nodes|find|show|add|...
void add_rule_commands(Command root);         // rules.cc: rules list|apply
void add_text_commands(Command root);         // text/: filter-text
void add_search_commands(Command root);       // search.cc: search like|regex
void add_metadata_commands(Command root);     // metadata.cc: metadata remove
void add_schema_commands(Command root);       // schema/: schema show|diff|upgrade
void add_service_commands(Command root);      // service.cc: service restart|reload|load|unload
void add_frame_commands(Command root);        // frames/: frame encode|decode
void add_net_commands(Command root);          // net.cc: net

}  // namespace devcfg
