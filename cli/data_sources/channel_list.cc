#include "cli/data_sources/channel_list.h"

#include <algorithm>
#include <charconv>

#include "base/json_fields.h"
#include "cli/json_file.h"
#include "cli/output.h"

namespace devcfg {
namespace {

// `text` is INDEX:GUID:NAME; the name may contain further colons.
json_object* parse_channel(const std::string& text) {
  const std::size_t first = text.find(':');
  const std::size_t second = first != std::string::npos ? text.find(':', first + 1) : first;
  Channel channel;
  const char* index_end = text.data() + std::min(first, text.size());
  const auto read = std::from_chars(text.data(), index_end, channel.channel_index);
  if (second == std::string::npos || read.ec != std::errc() || read.ptr != index_end) {
    throw UsageError("--channel: " + in_quotes(text) + " is not INDEX:GUID:NAME");
  }
  channel.guid = text.substr(first + 1, second - first - 1);
  channel.name = text.substr(second + 1);
  return channel_object(channel);
}

}  // namespace

void add_channel_options(Command command, ChannelOptions& options, const std::string& file_help) {
  command
      .option("--channels", options.file,
              "The camera channels from a JSON file (- is standard input):\n"
              "[{\"channel_index\": 0, \"guid\": \"cam-01\", \"name\": \"Entrance\"}, ...]" +
                  file_help)
      .value_name("FILE");
  command.option("--channel", options.single, "One channel; may be given several times")
      .value_name("INDEX:GUID:NAME");
}

Json read_channel_options(const ChannelOptions& options) {
  if (!options.given()) {
    return nullptr;
  }
  Json list(options.file ? read_json_file(*options.file) : Json(json_object_new_array()));
  const std::string subject =
      "the channel list" + (options.file ? " of " + shown_name(*options.file) : "");
  if (json_object_is_type(list.get(), json_type_array) != 0) {
    for (const std::string& text : options.single) {
      json_object_array_add(list.get(), parse_channel(text));
    }
  }
  Problems problems;
  check_channel_list(list.get(), "", problems);
  problems.throw_if_any(subject);
  return list;
}

std::vector<Channel> sorted_channels(json_object* channel_list) {
  std::vector<Channel> channels(json_object_array_length(channel_list));
  for (std::size_t i = 0; i < channels.size(); ++i) {
    json_object* entry = json_object_array_get_idx(channel_list, i);
    channels[i].channel_index = base::int_field(entry, "channel_index");
    channels[i].guid = base::string_field(entry, "guid");
    channels[i].name = base::string_field(entry, "name");
  }
  std::sort(channels.begin(), channels.end(), [](const Channel& left, const Channel& right) {
    return left.channel_index < right.channel_index;
  });
  return channels;
}

bool check_channel_list(json_object* channel_list, const std::string& where, Problems& problems) {
  if (const int status = check_channel_list_valid(channel_list); status != 0) {
    problems.add(where.empty() ? "the document" : where, devcfg_result_text(status));
    return false;
  }
  for (std::size_t i = 0; i < json_object_array_length(channel_list); ++i) {
    ObjectFields fields(json_object_array_get_idx(channel_list, i), entry_of(where, i), problems);
    fields.allow_only({"channel_index", "guid", "name"});
  }
  return true;
}

json_object* channel_object(const Channel& channel) {
  json_object* object = json_object_new_object();
  json_object_object_add(object, "channel_index", json_object_new_int(channel.channel_index));
  json_object_object_add(object, "guid", json_text(channel.guid));
  json_object_object_add(object, "name", json_text(channel.name));
  return object;
}

void print_channels(const std::vector<DataSource>& data_sources) {
  Table table({"DATA SOURCE", "CHANNEL", "CAMERA", "NAME"});
  bool empty = true;
  for (const DataSource& data_source : data_sources) {
    for (const Channel& channel : data_source.channel_guid_list) {
      table.add_row({data_source.vault_id, std::to_string(channel.channel_index), channel.guid,
                     channel.name});
      empty = false;
    }
  }
  if (empty) {
    print_line("no channels");
  } else {
    table.print();
  }
}

bool same_channels(const std::vector<Channel>& left, const std::vector<Channel>& right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](const Channel& one, const Channel& other) {
                      return one.channel_index == other.channel_index && one.guid == other.guid &&
                             one.name == other.name;
                    });
}

}  // namespace devcfg
