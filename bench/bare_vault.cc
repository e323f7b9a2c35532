#include "bench/bare_vault.h"

#include <json-c/json.h>
#include <sqlite3.h>

#include <string_view>
#include <unordered_map>

namespace bench {
namespace {

sqlite3* open(const std::string& database) {
  sqlite3* handle = nullptr;
  sqlite3_open_v2(database.c_str(), &handle, SQLITE_OPEN_READWRITE, nullptr);
  return handle;
}

sqlite3_stmt* prepare(sqlite3* handle, const char* query) {
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(handle, query, -1, &statement, nullptr);
  return statement;
}

json_object* text(sqlite3_stmt* row, int column) {
  return json_object_new_string_len(reinterpret_cast<const char*>(sqlite3_column_text(row, column)),
                                    sqlite3_column_bytes(row, column));
}

json_object* number(sqlite3_stmt* row, int column) {
  return json_object_new_int(sqlite3_column_int(row, column));
}

struct Vault {
  json_object* filters;
  json_object* channels;
};
using Vaults = std::unordered_map<std::string, Vault>;

Vault& owner(Vaults& vaults, sqlite3_stmt* row) {
  return vaults.at(reinterpret_cast<const char*>(sqlite3_column_text(row, 0)));
}

json_object* read_data_sources(sqlite3* handle, Vaults& vaults) {
  json_object* list = json_object_new_array();
  sqlite3_stmt* row = prepare(handle,
                              "SELECT vault_id, vault_name, description, type, list_index, enable"
                              " FROM data_source ORDER BY list_index, record_id");
  while (sqlite3_step(row) == SQLITE_ROW) {
    const Vault vault = {json_object_new_array(), json_object_new_array()};
    vaults.emplace(reinterpret_cast<const char*>(sqlite3_column_text(row, 0)), vault);
    json_object* object = json_object_new_object();
    json_object_object_add(object, "vault_id", text(row, 0));
    json_object_object_add(object, "vault_name", text(row, 1));
    json_object_object_add(object, "description", text(row, 2));
    json_object_object_add(object, "type", text(row, 3));
    json_object_object_add(object, "index", number(row, 4));
    json_object_object_add(object, "enable", json_object_new_boolean(sqlite3_column_int(row, 5)));
    json_object* status = json_object_new_object();
    json_object_object_add(status, "last_recv_date", json_object_new_string(""));
    json_object_object_add(object, "status", status);
    json_object_object_add(object, "filter", vault.filters);
    json_object_object_add(object, "channel_guid_list", vault.channels);
    json_object_array_add(list, object);
  }
  sqlite3_finalize(row);
  return list;
}

void read_channels(sqlite3* handle, Vaults& vaults) {
  sqlite3_stmt* row = prepare(handle,
                              "SELECT vault_id, channel_index, guid, name FROM channel"
                              " ORDER BY vault_id, channel_index, record_id");
  while (sqlite3_step(row) == SQLITE_ROW) {
    json_object* object = json_object_new_object();
    json_object_object_add(object, "channel_index", number(row, 1));
    json_object_object_add(object, "guid", text(row, 2));
    json_object_object_add(object, "name", text(row, 3));
    json_object_array_add(owner(vaults, row).channels, object);
  }
  sqlite3_finalize(row);
}

void read_filters(sqlite3* handle, Vaults& vaults) {
  sqlite3_stmt* row = prepare(handle,
                              "SELECT vault_id, type, target, result, name FROM filter"
                              " ORDER BY vault_id, record_id");
  while (sqlite3_step(row) == SQLITE_ROW) {
    json_object* object = json_object_new_object();
    json_object_object_add(object, "type", number(row, 1));
    json_object_object_add(object, "target", text(row, 2));
    json_object_object_add(object, "result", text(row, 3));
    json_object_object_add(object, "name", text(row, 4));
    json_object_array_add(owner(vaults, row).filters, object);
  }
  sqlite3_finalize(row);
}

}  // namespace

bool bare_exists(const std::string& database, const std::string& vault_id) {
  sqlite3* handle = open(database);
  sqlite3_stmt* row = prepare(handle, "SELECT count(*) FROM data_source WHERE vault_id = ?");
  sqlite3_bind_text(row, 1, vault_id.data(), static_cast<int>(vault_id.size()), SQLITE_STATIC);
  const bool exists = sqlite3_step(row) == SQLITE_ROW && sqlite3_column_int(row, 0) == 1;
  sqlite3_finalize(row);
  sqlite3_close(handle);
  return exists;
}

json_object* bare_listing(const std::string& database) {
  sqlite3* handle = open(database);
  Vaults vaults;
  json_object* document = json_object_new_object();
  json_object_object_add(document, "vault_list", read_data_sources(handle, vaults));
  read_channels(handle, vaults);
  read_filters(handle, vaults);
  sqlite3_close(handle);
  return document;
}

}  // namespace bench
