// The device tree: /third_party/zelip/config/zelip.xml, one numbered node for each device.
//
//   device / device_node_list     the names of the nodes in use, joined by "," without blanks;
//                                 "NULL" stands for an empty list, an item "NULL" is skipped
//   device / device_007 / ...     the values of node 7 (devtree/device_info.h)
//
// A node's name is "device_" and its number in at least three digits, cut to 15 characters; the
// numbers that this library gives out run from 0 to 127. The number of a name is what is written in
// decimal after its first "_"; a name without a number belongs to no device. Identifiers are
// compared whole and by letter case; one of the file is cut to 127 bytes when it is read.
//
// A `tree` is a handle of platform/config_tree.h that the caller opened and closes; with a null
// argument nothing is found and nothing stored.
#pragma once

#include "devtree/device_info.h"
#include "platform/export.h"

// A device tree and a built-in list hold up to this many nodes and entries.
inline constexpr int kMaxDeviceNodes = 128;

// Creates the file of the device tree, holding just the XML declaration, when there is none. True
// when it exists or was created and is on the disk; false, and a log line, when it cannot be. It is
// its owner's alone (mode 0600), since passwords of devices are kept in it. Its folder is not
// created. An existing file is never emptied, not even one that may not be read or that another
// process creates at the same time.
ORVANEIP_API bool initial_xml();

// The number of the device's node in the file of the device tree, or -1: unknown, or the file
// cannot be opened (logged).
ORVANEIP_API int devcfg_get_device_node(char* device_id);

// The number of the first listed node with this `device_id`, or -1. The list is read as far as
// 4,095 bytes. `top` is the top element of the tree: "device", or another one with the same layout.
ORVANEIP_API int find_device_exist(void* tree, char* device_id);
ORVANEIP_API int find_device_exist_access(void* tree, char* device_id, char* top);

// Appends the name of node `number` to the node list, whether or not it is listed already; the
// values of the node are the caller's to write. An absent or empty list starts with this name.
// Always true: a list that would outgrow its 4,095 bytes stays as it is, with a log line.
ORVANEIP_API bool add_device_node(void* tree, int number, char* top);

// Reads node `number` into `*info`, which is zeroed first. An absent value is empty, an absent
// `enable` false. False when the node has no device_id: then `device_id` reads "NULL" and `node_no`
// stays 0, while the other fields hold what was read. False also when `info` is null, and when
// `tree` is: then the record stays zeroed.
ORVANEIP_API bool get_device(void* tree, int number, TDeviceInfo* info);

// Looks a device up in a tree whose top element is `terminal` (terminal / NAME / device_id). `list`
// holds the names to look at, joined by ",", and is cut up in place; empty names are skipped, and
// those beyond the first 128 are ignored with a log line. The first name with this `device_id` is
// copied to `node_name`, a buffer with room for the longest name of the list and its terminator,
// which is left alone when there is none. Always 0.
ORVANEIP_API int devcfg_find_device_node(void* tree, char* list, char* device_id, char* node_name);
