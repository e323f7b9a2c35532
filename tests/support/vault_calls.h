// The vault for tests: exported calls on texts, JSON text in and out, and the records below them.
#pragma once

#include <json-c/json.h>

#include <memory>

#include "tests/support/library.h"

namespace test {

// The object of a JSON text; null for an empty text.
struct Json {
  explicit Json(const std::string& text)
      : object(text.empty() ? nullptr : json_tokener_parse(text.c_str()), json_object_put) {}
  operator json_object*() const { return object.get(); }
  std::shared_ptr<json_object> object;
};

// A caller's buffer of `size` bytes, followed by guard bytes.
struct Buffer {
  explicit Buffer(std::size_t size_bytes) : size(size_bytes), bytes(size_bytes + 64, '#') {}
  char* data() { return bytes.data(); }
  bool untouched() const { return bytes.find_first_not_of('#') == std::string::npos; }
  bool guard_untouched() const { return bytes.find_first_not_of('#', size) == std::string::npos; }
  std::size_t size;
  std::string bytes;
};

// An open object of the vault database.
struct OpenVault {
  OpenVault() { vault.init(); }
  ~OpenVault() { vault.release(); }
  CDataSource* operator->() { return &vault; }
  CDataSource vault;
};

inline metadata_vault::DataSource data_source(const std::string& vault_id, int index) {
  metadata_vault::DataSource record;
  record.vault_id = vault_id;
  record.vault_name = "name of " + vault_id;
  record.index = index;
  return record;
}

inline std::vector<metadata_vault::DataSource> stored(const std::string& vault_id = "") {
  std::vector<metadata_vault::DataSource> found;
  OpenVault()->query_data_source(vault_id, "", found);
  return found;
}

// Returns 0, or the result code of a refusal.
inline int add(std::string vault_id, std::string name = "name", const std::string& channels = "") {
  int code = 0;
  std::string text = "old";
  const char* added =
      devcfg_add_device(vault_id.data(), text.data(), nullptr, name.data(), text.data(), nullptr,
                        nullptr, Json(channels), 0, false, true, &code);
  EXPECT_EQ(added, code == 0 ? vault_id.data() : nullptr);
  return code;
}

// The edits as JSON texts; no edit for an empty one.
struct Edits {
  std::string name, description, enable, channels;
};

inline int modify(std::string vault_id, const Edits& edits, std::vector<int>& channel_indexes,
                  char* old_name = nullptr, char* old_description = nullptr) {
  return devcfg_modify_device(vault_id.data(), nullptr, Json(edits.name), Json(edits.description),
                              nullptr, nullptr, Json(edits.channels), nullptr, Json(edits.enable),
                              old_name, old_description, channel_indexes);
}

// Returns the document of one data source, or of all of them.
inline std::string show(std::string vault_id = "") {
  int code = 1;
  json_object* document = vault_id.empty() ? devcfg_get_all_device(&code, nullptr, nullptr, nullptr)
                                           : devcfg_get_device(vault_id.data(), &code);
  EXPECT_EQ(code, 0);
  const std::string text = json_object_to_json_string_ext(document, JSON_C_TO_STRING_NOSLASHESCAPE);
  json_object_put(document);
  return text;
}

}  // namespace test
