#include <set>

#include "cli/data_sources/channel_list.h"
#include "cli/data_sources/vault_document.h"
#include "cli/filters/filter_list.h"
#include "cli/output.h"

namespace devcfg {
namespace {

constexpr std::int64_t kMaxIndex = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t kMaxTime = std::numeric_limits<std::int64_t>::max();

class DocumentReader {
 public:
  explicit DocumentReader(Problems& problems) : problems_(problems) {}

  DataSource read(json_object* entry, const std::string& where) {
    ObjectFields fields(entry, where, problems_);
    fields.allow_only({"vault_id", "vault_name", "description", "type", "index", "enable",
                       "last_recv_time", "filter", "channel_guid_list"});
    DataSource data_source;
    data_source.vault_id = read_id(fields);
    data_source.vault_name = fields.text("vault_name").value_or("");
    data_source.description = fields.text("description").value_or("");
    data_source.type = fields.text("type").value_or("");
    data_source.index = read_index(fields);
    data_source.enable = fields.boolean("enable").value_or(true);
    data_source.last_recv_time = fields.integer("last_recv_time", 0, kMaxTime).value_or(0);
    data_source.filter = read_filters(fields, data_source.vault_id);
    data_source.channel_guid_list = read_channels(fields, data_source.vault_id);
    return data_source;
  }

 private:
  std::string read_id(ObjectFields& fields) {
    const auto id = fields.text("vault_id");
    if (id && id->empty()) {
      problems_.add(fields.where("vault_id"), "empty");
    } else if (id && !ids_.insert(*id).second) {
      problems_.add(fields.where("vault_id"), in_quotes(*id) + " is used twice");
    }
    return id.value_or("");
  }

  std::int32_t read_index(ObjectFields& fields) {
    const auto index = fields.integer("index", 0, kMaxIndex);
    if (index && !indexes_.insert(*index).second) {
      problems_.add(fields.where("index"), std::to_string(*index) + " is used twice");
    }
    return static_cast<std::int32_t>(index.value_or(-1));
  }

  std::vector<Filter> read_filters(ObjectFields& fields, const std::string& vault_id) {
    json_object* list = fields.array("filter");
    if (list == nullptr) {
      return {};
    }
    auto filters = read_filter_list(list, fields.where("filter"), problems_);
    for (Filter& filter : filters) {
      filter.vault_id = vault_id;
    }
    return filters;
  }

  std::vector<Channel> read_channels(ObjectFields& fields, const std::string& vault_id) {
    json_object* list = fields.array("channel_guid_list");
    if (list == nullptr ||
        !check_channel_list(list, fields.where("channel_guid_list"), problems_)) {
      return {};
    }
    auto channels = sorted_channels(list);
    for (Channel& channel : channels) {
      channel.vault_id = vault_id;
    }
    return channels;
  }

  Problems& problems_;
  std::set<std::string> ids_;
  std::set<std::int64_t> indexes_;
};

}  // namespace

std::vector<DataSource> read_vault_document(json_object* document, Problems& problems) {
  ObjectFields fields(document, "", problems);
  fields.allow_only({"vault_list"});
  json_object* list = fields.array("vault_list");
  const std::size_t length = list != nullptr ? json_object_array_length(list) : 0;
  DocumentReader reader(problems);
  std::vector<DataSource> data_sources;
  for (std::size_t i = 0; i < length; ++i) {
    data_sources.push_back(
        reader.read(json_object_array_get_idx(list, i), entry_of("vault_list", i)));
  }
  return data_sources;
}

}  // namespace devcfg
