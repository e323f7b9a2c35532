// Reading the objects of a JSON list.
#pragma once

#include <json-c/json.h>

#include <new>
#include <string>

namespace base {

// The string value of `value` as json-c gives it (a number as its digits), up to the first NUL;
// empty for null. What json-c has no memory for is no empty text.
inline std::string string_value(json_object* value) {
  const char* text = json_object_get_string(value);
  if (text == nullptr && value != nullptr) {
    throw std::bad_alloc();
  }
  return text != nullptr ? text : "";
}

inline std::string string_field(json_object* object, const char* key) {
  return string_value(json_object_object_get(object, key));
}

// The integer reading of the field; 0 when it is missing.
inline int int_field(json_object* object, const char* key) {
  return json_object_get_int(json_object_object_get(object, key));
}

}  // namespace base
