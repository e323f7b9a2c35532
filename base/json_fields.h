// Reading the objects of a JSON list. Nothing here takes ownership.
#pragma once

#include <json-c/json.h>

#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace base {

// Returns the field; null when it is missing or null, or `object` is not an object.
inline json_object* field(json_object* object, const char* key) {
  return json_object_object_get(object, key);
}

// Returns the string value of `value` as json-c gives it (a number as its digits), up to the first
// NUL; empty for null. Throws std::bad_alloc when json-c has no memory for it.
inline std::string string_value(json_object* value) {
  const char* text = json_object_get_string(value);
  if (text == nullptr && value != nullptr) {
    throw std::bad_alloc();
  }
  return text != nullptr ? text : "";
}

inline std::string string_field(json_object* object, const char* key) {
  return string_value(field(object, key));
}

// Returns the integer reading of the field; 0 when it is missing.
inline int int_field(json_object* object, const char* key) {
  return json_object_get_int(field(object, key));
}

// Returns the bytes of a string, NULs included; `value` is a string and owns them.
inline std::string_view string_bytes(json_object* value) {
  return {json_object_get_string(value),
          static_cast<std::size_t>(json_object_get_string_len(value))};
}

// Returns true for a string without NUL, which NUL-terminated strings carry whole.
inline bool is_text(json_object* value) {
  return json_object_is_type(value, json_type_string) != 0 &&
         string_bytes(value).find('\0') == std::string_view::npos;
}

inline bool is_array(json_object* value) {
  return json_object_is_type(value, json_type_array) != 0;
}

inline bool is_object(json_object* value) {
  return json_object_is_type(value, json_type_object) != 0;
}

// Returns the entries of an array, in their order; they stay the array's.
inline std::vector<json_object*> entries(json_object* array) {
  std::vector<json_object*> found(json_object_array_length(array));
  for (std::size_t i = 0; i < found.size(); ++i) {
    found[i] = json_object_array_get_idx(array, i);
  }
  return found;
}

}  // namespace base
