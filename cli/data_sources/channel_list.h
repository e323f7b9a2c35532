// Channel lists, as options of a command, as JSON and as records.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/command_line.h"
#include "cli/json.h"
#include "cli/json_checks.h"
#include "cli/vault.h"

namespace devcfg {

// --channels FILE and --channel INDEX:GUID:NAME; the channels of both are joined.
struct ChannelOptions {
  std::optional<std::string> file;
  std::vector<std::string> single;

  bool given() const { return file.has_value() || !single.empty(); }
};
// `file_help`: a further line for the help of --channels.
void add_channel_options(Command command, ChannelOptions& options,
                         const std::string& file_help = "");

// Returns the list that the options give, checked; a null pointer when they give none. Throws
// CommandError when the library would not accept it, UsageError when a --channel is malformed.
Json read_channel_options(const ChannelOptions& options);

// Returns the channels of an accepted list, sorted by index as in the vault.
std::vector<Channel> sorted_channels(json_object* channel_list);

// Returns whether the library accepts the channel list at `where` ("": the document itself).
bool check_channel_list(json_object* channel_list, const std::string& where, Problems& problems);

// {"channel_index", "guid", "name"}
json_object* channel_object(const Channel& channel);

// Prints the channels of the data sources as a table.
void print_channels(const std::vector<DataSource>& data_sources);

bool same_channels(const std::vector<Channel>& left, const std::vector<Channel>& right);

}  // namespace devcfg
