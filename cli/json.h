// JSON documents as values.
#pragma once

#include <json-c/json.h>

#include <memory>
#include <string>
#include <vector>

namespace devcfg {

struct JsonRelease {
  void operator()(json_object* object) const { json_object_put(object); }
};
using Json = std::unique_ptr<json_object, JsonRelease>;

inline json_object* json_text(const std::string& text) {
  return json_object_new_string_len(text.data(), static_cast<int>(text.size()));
}

// Returns an array of the results of `build` for the records, in their order.
template <typename Record>
json_object* json_array(const std::vector<Record>& records, json_object* (*build)(const Record&)) {
  json_object* array = json_object_new_array();
  for (const Record& record : records) {
    json_object_array_add(array, build(record));
  }
  return array;
}

// Returns the document as text, indented, without a line feed at its end.
inline const char* document_text(json_object* document) {
  return json_object_to_json_string_ext(
      document, JSON_C_TO_STRING_PRETTY | JSON_C_TO_STRING_SPACED | JSON_C_TO_STRING_NOSLASHESCAPE);
}

}  // namespace devcfg
