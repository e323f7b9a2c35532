// The subcommand families of devcfg; each has a folder of its own and registers its commands here.
//
// A command is a CLI::App subcommand whose callback does the work on exported functions only. It
// prints its result on standard output and returns, or throws: Refusal for "refused or failed"
// (exit status 1), NegativeAnswer (the same without a message), what CLI11 throws for wrong usage
// (exit status 2).
#pragma once

#include <CLI/CLI.hpp>

namespace devcfg {

void add_data_source_commands(CLI::App& app);  // data_sources/: add list show modify remove ...
void add_filter_commands(CLI::App& app);       // filters/: filters show|set
void add_camera_commands(CLI::App& app);       // cameras/: camera removed|renamed
void add_tree_commands(CLI::App& app);         // tree/: tree init|nodes|find|show|add|...
void add_rule_commands(CLI::App& app);         // rules/: rules list|apply
void add_text_commands(CLI::App& app);         // text/: filter-text search metadata
void add_schema_commands(CLI::App& app);       // schema/: schema show|diff|upgrade
void add_service_commands(CLI::App& app);      // service/: service restart|reload|load|unload
void add_frame_commands(CLI::App& app);        // frames/: frame encode|decode
void add_net_commands(CLI::App& app);          // net/: net

}  // namespace devcfg
