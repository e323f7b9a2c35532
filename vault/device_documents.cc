#include "vault/device_documents.h"

#include <json-c/json.h>

#include <charconv>
#include <cstdint>
#include <ctime>
#include <limits>
#include <string>
#include <string_view>

#include "foundation/result_codes.h"
#include "foundation/time_zone.h"
#include "platform/log_sinks.h"
#include "platform/vault_database.h"
#include "vault/internal/vault_connection.h"

namespace {

using metadata_vault::Channel;
using metadata_vault::DataSource;
using metadata_vault::Filter;
using StatusBuilder = json_object* (*)(std::int64_t last_recv_time);

// An object is null when memory is exhausted; its parts are released then. Nothing that builds
// objects throws, so that none is lost.
json_object* new_string(std::string_view text) {
  return json_object_new_string_len(text.data(), static_cast<int>(text.size()));
}

json_object* new_decimal(std::int64_t number) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof(digits), number).ptr;
  return new_string({digits, static_cast<std::size_t>(end - digits)});
}

// Makes `part` a part of `whole`; releases both when one of them is null.
template <typename Attach>
void attach(json_object*& whole, json_object* part, Attach attach_to_whole) {
  if (whole == nullptr || part == nullptr || attach_to_whole() != 0) {
    json_object_put(part);
    json_object_put(whole);
    whole = nullptr;
  }
}

// The key is a literal and new in its object, so json-c need neither copy it nor look it up.
void add(json_object*& object, const char* key, json_object* value) {
  attach(object, value, [=] {
    return json_object_object_add_ex(object, key, value,
                                     JSON_C_OBJECT_ADD_KEY_IS_NEW | JSON_C_OBJECT_ADD_CONSTANT_KEY);
  });
}

json_object* receive_time(std::int64_t last_recv_time) {
  json_object* status = json_object_new_object();
  add(status, "last_recv_time_str",
      last_recv_time != 0 ? new_decimal(last_recv_time) : new_string(""));
  return status;
}

json_object* local_date(std::int64_t time_ms) {
  const std::time_t seconds = time_ms / 1000;
  std::tm local{};
  tzset();
  char text[128] = {};
  localtime_r(&seconds, &local);  // never fails: the year of any 64-bit milliseconds fits an int
  std::strftime(text, sizeof(text), "%Y-%m-%d %X", &local);
  return new_string(text);
}

std::int64_t server_time(std::int64_t time_ms) {
  std::int64_t shifted = 0;
  if (__builtin_add_overflow(time_ms, std::int64_t{get_timezone_diff()} * 1000, &shifted)) {
    return time_ms < 0 ? std::numeric_limits<std::int64_t>::min()
                       : std::numeric_limits<std::int64_t>::max();
  }
  return shifted;
}

json_object* receive_date(std::int64_t last_recv_time) {
  json_object* status = json_object_new_object();
  if (last_recv_time == 0) {
    add(status, "last_recv_date", new_string(""));
    return status;
  }
  add(status, "last_recv_date", local_date(last_recv_time));
  add(status, "server_time", new_decimal(server_time(last_recv_time)));
  return status;
}

json_object* filter_object(const Filter& filter) {
  json_object* object = json_object_new_object();
  add(object, "type", json_object_new_int(filter.type));
  add(object, "target", new_string(filter.target));
  add(object, "result", new_string(filter.result));
  add(object, "name", new_string(filter.name));
  return object;
}

json_object* channel_object(const Channel& channel) {
  json_object* object = json_object_new_object();
  add(object, "channel_index", json_object_new_int(channel.channel_index));
  add(object, "guid", new_string(channel.guid));
  add(object, "name", new_string(channel.name));
  return object;
}

void append(json_object*& array, json_object* entry) {
  attach(array, entry, [=] { return json_object_array_add(array, entry); });
}

template <typename Record>
json_object* array_of(const std::vector<Record>& records, json_object* (*build)(const Record&)) {
  json_object* array = json_object_new_array_ext(static_cast<int>(records.size()));
  for (const Record& record : records) {
    append(array, build(record));
  }
  return array;
}

json_object* vault_object(const DataSource& data_source, StatusBuilder build_status) {
  json_object* object = json_object_new_object();
  add(object, "vault_id", new_string(data_source.vault_id));
  add(object, "vault_name", new_string(data_source.vault_name));
  add(object, "description", new_string(data_source.description));
  add(object, "type", new_string(data_source.type));
  add(object, "index", json_object_new_int(data_source.index));
  add(object, "enable", json_object_new_boolean(data_source.enable));
  add(object, "status", build_status(data_source.last_recv_time));
  add(object, "filter", array_of(data_source.filter, filter_object));
  add(object, "channel_guid_list", array_of(data_source.channel_guid_list, channel_object));
  return object;
}

// Returns the document of the data sources with this identifier; of all when it is empty.
json_object* vault_document(const std::string& vault_id, StatusBuilder build_status) {
  const orvaneip::VaultConnection<CDataSource> vault;
  std::vector<DataSource> found;
  vault->query_data_source(vault_id, "", found);
  json_object* list = json_object_new_array_ext(static_cast<int>(found.size()));
  for (const DataSource& data_source : found) {
    append(list, vault_object(data_source, build_status));
  }
  json_object* document = json_object_new_object();
  add(document, "vault_list", list);
  return document;
}

void report(int* error_code, int result) {
  if (error_code != nullptr) {
    *error_code = result;
  }
}

json_object* with_result(json_object* document, int* error_code) {
  report(error_code, document != nullptr ? kDevcfgOk : kDevcfgFailed);
  return document;
}

}  // namespace

json_object* devcfg_get_device(char* vault_id, int* error_code) {
  orvane_log_debug("[devcfg](%s:%d) dev_id = %s", __func__, __LINE__,
                   vault_id != nullptr ? vault_id : "(null)");
  if (vault_id == nullptr || *vault_id == '\0') {
    report(error_code, kDevcfgDeviceIdMissing);
    return nullptr;
  }
  return with_result(vault_document(vault_id, receive_time), error_code);
}

json_object* devcfg_get_all_device(int* error_code, char* /*ignored_text_1*/,
                                   char* /*ignored_text_2*/, char* /*ignored_text_3*/) {
  return with_result(vault_document("", receive_date), error_code);
}
