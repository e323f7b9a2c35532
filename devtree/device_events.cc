#include "devtree/device_events.h"

#include <optional>
#include <string>
#include <vector>

#include "devtree/device_tree.h"
#include "devtree/internal/tree_values.h"
#include "foundation/split.h"
#include "platform/event_service.h"
#include "platform/log_sinks.h"

namespace {

constexpr char kTop[] = "device_event_root";
constexpr char kFunction[] = "remove_event_in_table";

// Returns nothing when there is no list.
template <typename... Names>
std::optional<std::vector<std::string>> read_list(void* event_tree, Names... path) {
  char list[kNodeListBytes];
  orvaneip::read_value(event_tree, orvaneip::kNoValue, list, kTop, path...);
  return std::string(list) != orvaneip::kNoValue ? std::optional(split(list, ',')) : std::nullopt;
}

bool remove_event(void* event_tree, const char* device, const char* terminal, const char* event) {
  char id[kEventIdBytes];
  orvaneip::read_value(event_tree, orvaneip::kNoValue, id, kTop, device, terminal, event, "evt_id");
  if (aevt_remove_event(id) != 0) {
    return true;
  }
  orvane_log_debug("[%s] aevt_remove_evet fail when remove evet_id:%s", kFunction, id);
  return false;
}

bool remove_events(void* event_tree, const char* device, const char* terminal) {
  const auto events = read_list(event_tree, device, terminal, "event_node_list");
  if (!events) {
    orvane_log_debug("[%s] no active event in terminal:%s", kFunction, terminal);
    return true;
  }
  bool removed = true;
  for (const std::string& event : *events) {
    removed = remove_event(event_tree, device, terminal, event.c_str()) && removed;
  }
  return removed;
}

}  // namespace

bool remove_event_in_table(void* event_tree, char* device) {
  if (event_tree == nullptr || device == nullptr) {
    return false;
  }
  const auto terminals = read_list(event_tree, device, "terminal_node_list");
  if (!terminals) {
    orvane_log_debug("[%s] no terminal in device:%s", kFunction, device);
    return true;
  }
  bool removed = true;
  for (const std::string& terminal : *terminals) {
    removed = remove_events(event_tree, device, terminal.c_str()) && removed;
  }
  return removed;
}
