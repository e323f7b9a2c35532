#include "cli/filters/filter_list.h"

#include <algorithm>

#include "cli/output.h"

namespace devcfg {
namespace {

std::int32_t read_type(ObjectFields& fields, Problems& problems) {
  using Limits = std::numeric_limits<std::int32_t>;
  const auto type = fields.integer("type", Limits::min(), Limits::max(), Presence::kOptional);
  if (type == metadata_vault::kNoFilterType) {
    problems.add(fields.where("type"), "-1 means no type, and ends the reading of rules");
  }
  return static_cast<std::int32_t>(type.value_or(0));
}

Filter read_filter(json_object* entry, const std::string& where, Problems& problems) {
  ObjectFields fields(entry, where, problems);
  fields.allow_only({"type", "target", "result", "name"});
  Filter filter;
  filter.type = read_type(fields, problems);
  filter.target = fields.text("target", Presence::kOptional, kMaxFilterTextBytes).value_or("");
  filter.result = fields.text("result", Presence::kOptional, kMaxFilterTextBytes).value_or("");
  filter.name = fields.text("name", Presence::kOptional).value_or("");
  return filter;
}

}  // namespace

std::vector<Filter> read_filter_list(json_object* filter_list, const std::string& where,
                                     Problems& problems) {
  if (json_object_is_type(filter_list, json_type_array) == 0) {
    problems.add(where.empty() ? "the document" : where, "not an array");
    return {};
  }
  std::vector<Filter> filters;
  for (std::size_t i = 0; i < json_object_array_length(filter_list); ++i) {
    filters.push_back(
        read_filter(json_object_array_get_idx(filter_list, i), entry_of(where, i), problems));
  }
  return filters;
}

json_object* filter_object(const Filter& filter) {
  json_object* object = json_object_new_object();
  json_object_object_add(object, "type", json_object_new_int(filter.type));
  json_object_object_add(object, "target", json_text(filter.target));
  json_object_object_add(object, "result", json_text(filter.result));
  json_object_object_add(object, "name", json_text(filter.name));
  return object;
}

void print_filters(const std::vector<Filter>& filters) {
  if (filters.empty()) {
    print_line("no filters");
    return;
  }
  Table table({"NAME", "TYPE", "TARGET", "RESULT"});
  for (const Filter& filter : filters) {
    table.add_row({filter.name, std::to_string(filter.type), filter.target, filter.result});
  }
  table.print();
}

bool same_filters(const std::vector<Filter>& left, const std::vector<Filter>& right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](const Filter& one, const Filter& other) {
                      return one.type == other.type && one.target == other.target &&
                             one.result == other.result && one.name == other.name;
                    });
}

}  // namespace devcfg
