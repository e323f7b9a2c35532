// Checks a JSON document field by field and collects everything that is wrong with it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/json.h"

namespace devcfg {

// What is wrong with a document, each with its position: "vault_list[2].index: 3 is used twice".
class Problems {
 public:
  void add(const std::string& where, const std::string& what);

  // Throws a CommandError that lists all problems, if any. `subject`: the document, in words.
  void throw_if_any(const std::string& subject) const;

 private:
  std::vector<std::string> list_;
};

// Returns "list[3]", or "entry 3" when `list` is empty: then the document itself is the list.
std::string entry_of(const std::string& list, std::size_t position);

enum class Presence { kRequired, kOptional };

// The fields of the object at `where`. A field that is not as required is added to the problems and
// reads as nothing; a missing optional one reads as nothing.
class ObjectFields {
 public:
  // `object` may be any value: one that is not an object is a problem itself and has no fields.
  ObjectFields(json_object* object, std::string where, Problems& problems);

  bool is_object() const { return is_object_; }
  std::string where(const char* key) const;

  // Returns a string without NUL characters, of at most `max_bytes`.
  std::optional<std::string> text(const char* key, Presence presence = Presence::kRequired,
                                  std::size_t max_bytes = std::numeric_limits<std::size_t>::max());
  // Returns an integer from `lowest` to `highest`.
  std::optional<std::int64_t> integer(const char* key, std::int64_t lowest, std::int64_t highest,
                                      Presence presence = Presence::kRequired);
  std::optional<bool> boolean(const char* key);
  // Returns null when it is missing or not an array.
  json_object* array(const char* key);

  // Adds every other key to the problems.
  void allow_only(std::initializer_list<std::string_view> known);

 private:
  json_object* find(const char* key, Presence presence, json_type type, const char* type_name);

  json_object* object_;
  bool is_object_;
  std::string where_;
  Problems& problems_;
};

}  // namespace devcfg
