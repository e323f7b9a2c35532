// The device tree /third_party/zelip/config/zelip.xml, with one numbered node for each device.
//
//   device / device_node_list     the names of the nodes in use, joined by "," without spaces;
//                                 "NULL" is an empty list, an item "NULL" is skipped
//   device / device_007 / ...     the values of node 7 (devtree/device_info.h)
//
// A node's name is "device_" and its number in at least three digits; this library assigns the
// numbers below kMaxDeviceNodes. The number of a listed name is the decimal number after its first
// "_"; a name without a number belongs to no device. Identifiers are compared whole and
// case-sensitively; one in the file is cut to kDeviceTextBytes - 1 bytes when it is read.
//
// A `tree` is a handle of platform/config_tree.h that the caller opens and closes. With a null
// argument nothing is found and nothing is stored.
#pragma once

#include <cstddef>

#include "devtree/device_info.h"
#include "platform/export.h"

// The largest number of nodes in a device tree, and of entries in a built-in list.
inline constexpr int kMaxDeviceNodes = 128;

// Sizes in bytes, terminator included: of a list of names, and of the name of a node.
inline constexpr std::size_t kNodeListBytes = 4096;
inline constexpr std::size_t kNodeNameBytes = 16;

// Creates the file of the device tree, holding only the XML declaration, when it does not exist.
// Its mode is 0600, since it holds passwords of devices; its directory is not created. An existing
// file is never changed, even if it cannot be read or another process creates it at the same time.
// Returns true when the file exists or was created and is on the disk; false, with a log line, when
// it cannot be created.
ORVANEIP_API bool initial_xml();

// Returns the number of the device's node in the file of the device tree; -1 when the device is
// unknown or the file cannot be opened (logged).
ORVANEIP_API int devcfg_get_device_node(char* device_id);

// Return the number of the first listed node with this `device_id`, or -1. The list is cut to
// kNodeListBytes - 1 bytes. `top` is the top element of the tree: "device", or another one with the
// same layout.
ORVANEIP_API int find_device_exist(void* tree, char* device_id);
ORVANEIP_API int find_device_exist_access(void* tree, char* device_id, char* top);

// Appends the name of node `number`, cut to kNodeNameBytes - 1 bytes, to the node list, even if it
// is listed already; an absent or empty list becomes this name. The node's values are the caller's
// to write. Always returns true: a list that would exceed kNodeListBytes - 1 bytes is not changed,
// with a log line.
ORVANEIP_API bool add_device_node(void* tree, int number, char* top);

// Reads node `number` into `*info`, which is zeroed first. An absent value is empty, an absent
// `enable` false. Returns false when the node has no device_id: then `device_id` is "NULL",
// `node_no` is 0, and the other fields hold what was read. Also returns false when `info` or `tree`
// is null.
ORVANEIP_API bool get_device(void* tree, int number, TDeviceInfo* info);

// Finds a device in a tree whose top element is `terminal` (terminal / NAME / device_id). `list`
// holds the names to examine, joined by ",", and is modified; empty names are skipped, and those
// beyond kMaxDeviceNodes are ignored with a log line. Copies the first name with this `device_id`
// to `node_name`, a buffer that holds the longest name of `list` and its terminator; without a
// match it is not changed. Always returns 0.
ORVANEIP_API int devcfg_find_device_node(void* tree, char* list, char* device_id, char* node_name);
