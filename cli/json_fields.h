// Checking a JSON document field by field, and telling everything that is wrong with it.
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

// What is wrong with a document, each with its place: "vault_list[2].index: 3 is used twice".
class Problems {
 public:
  void add(const std::string& where, const std::string& what);

  // A Refusal that lists them all, when there are any. `subject`: the document, in words.
  void refuse_if_any(const std::string& subject) const;

 private:
  std::vector<std::string> list_;
};

// "list[3]"; "entry 3" when `list` is empty: the document itself is the list.
std::string entry_of(const std::string& list, std::size_t position);

enum class Presence { kRequired, kOptional };

// The fields of an object that stands at `where`. A field that is not as asked for is a problem,
// and reads as nothing; so does an optional one that is missing.
class ObjectFields {
 public:
  // `object` may be any value: one that is no object is a problem itself, and its fields are none.
  ObjectFields(json_object* object, std::string where, Problems& problems);

  bool is_object() const { return is_object_; }
  std::string where(const char* key) const;

  // A string without NUL characters, of at most `max_bytes`.
  std::optional<std::string> text(const char* key, Presence presence = Presence::kRequired,
                                  std::size_t max_bytes = std::numeric_limits<std::size_t>::max());
  // An integer of `lowest` to `highest`.
  std::optional<std::int64_t> integer(const char* key, std::int64_t lowest, std::int64_t highest,
                                      Presence presence = Presence::kRequired);
  std::optional<bool> boolean(const char* key);
  // Null when it is not there.
  json_object* array(const char* key);

  // Every other key is a problem.
  void refuse_keys_other_than(std::initializer_list<std::string_view> known);

 private:
  json_object* find(const char* key, Presence presence, json_type type, const char* type_name);

  json_object* object_;
  bool is_object_;
  std::string where_;
  Problems& problems_;
};

}  // namespace devcfg
