// Clearing the active events of a device.
#pragma once

#include <cstddef>

#include "platform/export.h"

// Size in bytes, terminator included, to which the identifier of an event is cut.
inline constexpr std::size_t kEventIdBytes = 128;

// Makes the event service (platform/event_service.h) remove each event that the event tree records
// for `device`, a node name:
//   device_event_root / DEVICE / terminal_node_list             terminal names joined by ","
//   device_event_root / DEVICE / TERMINAL / event_node_list     event names joined by ","
//   device_event_root / DEVICE / TERMINAL / EVENT / evt_id      the event's identifier
// A list is cut to kNodeListBytes - 1 bytes (devtree/device_tree.h) and split as split does
// (foundation/split.h). An absent identifier is "NULL". Every terminal and event is visited, in
// list order, also after a failure.
//
// `event_tree` is an open handle of platform/config_tree.h, which is only read. Returns true when
// each event was removed or no event was active; false when a removal failed (logged) or an
// argument is null.
ORVANEIP_API bool remove_event_in_table(void* event_tree, char* device);
