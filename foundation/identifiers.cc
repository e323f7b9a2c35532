#include "foundation/identifiers.h"

#include <uuid/uuid.h>

#include <string_view>

namespace {

std::string create_id(std::string_view prefix) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  uuid_t uuid;
  uuid_generate(uuid);
  std::string id(prefix);
  id.reserve(prefix.size() + 2 * sizeof(uuid));
  for (const unsigned char byte : uuid) {
    id += kDigits[byte >> 4];
    id += kDigits[byte & 0x0F];
  }
  return id;
}

}  // namespace

std::string create_device_id() { return create_id("ID"); }

std::string create_terminal_id() { return create_id("TID"); }
