#include "cli/json_checks.h"

#include <algorithm>
#include <utility>

#include "cli/command_error.h"

namespace devcfg {

void Problems::add(const std::string& where, const std::string& what) {
  list_.push_back(where + ": " + what);
}

void Problems::throw_if_any(const std::string& subject) const {
  if (list_.empty()) {
    return;
  }
  std::string reason =
      subject + (list_.size() == 1 ? " has a problem:"
                                   : " has " + std::to_string(list_.size()) + " problems:");
  for (const std::string& problem : list_) {
    reason += "\n  " + problem;
  }
  throw CommandError(reason);
}

std::string entry_of(const std::string& list, std::size_t position) {
  return list.empty() ? "entry " + std::to_string(position)
                      : list + "[" + std::to_string(position) + "]";
}

ObjectFields::ObjectFields(json_object* object, std::string where, Problems& problems)
    : object_(object),
      is_object_(json_object_is_type(object, json_type_object) != 0),
      where_(std::move(where)),
      problems_(problems) {
  if (!is_object_) {
    problems_.add(where_.empty() ? "the document" : where_, "not an object");
  }
}

std::string ObjectFields::where(const char* key) const {
  return where_.empty() ? key : where_ + "." + key;
}

json_object* ObjectFields::find(const char* key, Presence presence, json_type type,
                                const char* type_name) {
  json_object* value = nullptr;
  if (!is_object_) {
    return nullptr;
  }
  if (json_object_object_get_ex(object_, key, &value) == 0) {
    if (presence == Presence::kRequired) {
      problems_.add(where(key), "missing");
    }
    return nullptr;
  }
  if (json_object_is_type(value, type) == 0) {
    problems_.add(where(key), std::string("not ") + type_name);
    return nullptr;
  }
  return value;
}

std::optional<std::string> ObjectFields::text(const char* key, Presence presence,
                                              std::size_t max_bytes) {
  json_object* value = find(key, presence, json_type_string, "a string");
  if (value == nullptr) {
    return std::nullopt;
  }
  std::string text(json_object_get_string(value),
                   static_cast<std::size_t>(json_object_get_string_len(value)));
  if (text.find('\0') != std::string::npos) {
    problems_.add(where(key), "contains a NUL character");
    return std::nullopt;
  }
  if (text.size() > max_bytes) {
    problems_.add(where(key), "longer than " + std::to_string(max_bytes) + " bytes");
    return std::nullopt;
  }
  return text;
}

std::optional<std::int64_t> ObjectFields::integer(const char* key, std::int64_t lowest,
                                                  std::int64_t highest, Presence presence) {
  json_object* value = find(key, presence, json_type_int, "an integer");
  if (value == nullptr) {
    return std::nullopt;
  }
  constexpr auto kMax = std::numeric_limits<std::int64_t>::max();
  const std::int64_t number = json_object_get_int64(value);
  // json-c reads a number above the largest signed one as the largest.
  const bool cut =
      number == kMax && json_object_get_uint64(value) != static_cast<std::uint64_t>(kMax);
  if (cut || number < lowest || number > highest) {
    problems_.add(where(key),
                  "not between " + std::to_string(lowest) + " and " + std::to_string(highest));
    return std::nullopt;
  }
  return number;
}

std::optional<bool> ObjectFields::boolean(const char* key) {
  json_object* value = find(key, Presence::kRequired, json_type_boolean, "true or false");
  return value != nullptr ? std::optional(json_object_get_boolean(value) != 0) : std::nullopt;
}

json_object* ObjectFields::array(const char* key) {
  return find(key, Presence::kRequired, json_type_array, "an array");
}

void ObjectFields::allow_only(std::initializer_list<std::string_view> known) {
  if (!is_object_) {
    return;
  }
  for (const lh_entry* entry = json_object_get_object(object_)->head; entry != nullptr;
       entry = entry->next) {
    const char* key = static_cast<const char*>(lh_entry_k(entry));
    if (std::find(known.begin(), known.end(), key) == known.end()) {
      problems_.add(where(key), "unknown key");
    }
  }
}

}  // namespace devcfg
