// The commands on data sources; each is registered by a function of its own.
#pragma once

#include <CLI/CLI.hpp>

namespace devcfg {

void register_add(CLI::App& app);
void register_list(CLI::App& app);
void register_show(CLI::App& app);
void register_channels(CLI::App& app);
void register_modify(CLI::App& app);
void register_remove(CLI::App& app);
void register_export(CLI::App& app);
void register_import(CLI::App& app);

}  // namespace devcfg
