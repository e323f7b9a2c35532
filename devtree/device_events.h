// Clearing the active events of a device.
#pragma once

#include "platform/export.h"

// Has the event service (platform/event_service.h) remove each event of `device`, a node name, that
// the event tree records:
//   device_event_root / DEVICE / terminal_node_list             terminal names joined by ","
//   device_event_root / DEVICE / TERMINAL / event_node_list     event names joined by ","
//   device_event_root / DEVICE / TERMINAL / EVENT / evt_id      the event's id; absent: "NULL"
// Lists are read as far as 4,095 bytes and cut as split does (foundation/split.h), ids as far as
// 127. Every terminal and event is visited, in list order, also after a failure.
//
// `event_tree` is an open handle of platform/config_tree.h; it is only read. True when each event
// was removed or there was none; false when a removal failed (logged) or an argument is null.
ORVANEIP_API bool remove_event_in_table(void* event_tree, char* device);
