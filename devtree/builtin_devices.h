// The devices that come with the system: the device tree follows the built-in list
// /third_party/zelip/config/zelip_builtin.xml.
//
//   device / no                   the number of entries
//   device / builtin_0 / qid      the key that ties device nodes to entry 0; absent: "NULL"
//   device / builtin_0 / builtin  the mark of such nodes: it must read as true in the device tree
//   device / builtin_0 / ...      device_id type brand device_name plugin install_path db_name
//
// A node of the device tree (devtree/device_tree.h) is built-in when its own `builtin` reads as
// true. All other nodes are the user's: their values and their positions in the list never change.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/export.h"

// Size in bytes, terminator included, to which a value of an entry is cut when it is copied.
inline constexpr std::size_t kBuiltinValueBytes = 1024;

struct BuiltinAddition {
  std::string node_name;
  int entry;  // the number of the entry that is copied, from 0
};

struct BuiltinChanges {
  std::vector<std::string> removed;  // names of the nodes whose entry is gone
  std::vector<BuiltinAddition> added;
  bool limit_reached = false;  // an entry was not added: kMaxDeviceNodes nodes are listed
};

// Removes each built-in node whose key no entry has, and adds an enabled node, under the lowest
// free number, for each entry without one. Copies the entry's nine values: each is cut to
// kBuiltinValueBytes - 1 bytes (or up to 3 fewer, where that would split a character of UTF-8), an
// absent one is "NULL". Other values that an unlisted node of that number holds stay. Nodes that
// stay keep all their values. Then stores the node list, without empty items. A second run changes
// nothing.
//
// Returns 0 when the device tree matches the list afterwards. Returns -1, with a log line,
//  - when a file cannot be opened or saved, or the device tree does not hold what was stored (its
//    top element is not "device"): then nothing has changed;
//  - at the limit of kMaxDeviceNodes: then the removals and the earlier additions are stored, and
//    the node list with them.
//
// Irregular files:
//  - Entries that share a key are tied to nodes one to one, as far as there are nodes.
//  - The node of an entry whose mark does not read as true is the user's; the entry is not added
//    again while a node has its key and its mark.
//  - Entries beyond kMaxDeviceNodes are ignored; names beyond kMaxDeviceNodes stay in the list, but
//    their nodes are not examined. Each gives one log line.
//  - A name that is listed twice is removed everywhere with its node. A name without a number is
//    logged as number -1.
ORVANEIP_API int devcfg_check_builtin();

// Appends to `changes` what devcfg_check_builtin would do now, with the same log lines; the files
// are only read. Returns 0, or -1 when a file cannot be opened or the limit would be reached.
ORVANEIP_API int devcfg_preview_builtin(BuiltinChanges& changes);
