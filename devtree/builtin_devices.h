// The devices that come with the system: the device tree follows the built-in list
// /third_party/zelip/config/zelip_builtin.xml.
//
//   device / no                   the number of entries
//   device / builtin_0 / qid      the key that ties device nodes to entry 0; absent: "NULL"
//   device / builtin_0 / builtin  the mark of such nodes: it must read as true in the device tree
//   device / builtin_0 / ...      device_id type brand device_name plugin install_path db_name
//
// A node of the device tree (devtree/device_tree.h) is built-in when its own `builtin` reads as
// true. All others are the user's: they keep their values and their place in the list.
#pragma once

#include <string>
#include <vector>

#include "platform/export.h"

struct BuiltinAddition {
  std::string node_name;
  int entry;  // from 0, the number of the built-in entry that is copied
};

struct BuiltinChanges {
  std::vector<std::string> removed;  // names of nodes whose entry has gone
  std::vector<BuiltinAddition> added;
  bool limit_reached = false;  // a further entry found no place: 128 nodes are listed
};

// Removes each built-in node whose key no entry has, and adds an enabled node, under the lowest
// free number, for each entry without one: its nine values, each cut to 1,023 bytes (or up to 3
// fewer, where that would split a character of UTF-8), "NULL" for one that is absent. What an
// unlisted node has left behind under that number stays beside them. Nodes that stay keep all their
// values. Then stores the node list, without empty items; "NULL" alone stands for no node. A second
// run changes nothing.
//
// 0 when the device tree matches the list afterwards. -1, with a log line,
//  - when a file cannot be opened or saved, or the device tree does not hold what was stored (its
//    top element is not "device"): then nothing has changed;
//  - at the limit of 128 nodes: then removals and the additions before it are stored, and the node
//    list with them.
//
// Where files are not as they should be:
//  - Entries that share a key are tied to nodes one to one, as far as there are nodes.
//  - The node of an entry whose mark does not read as true counts as the user's; the entry is not
//    added again while a node with its key and its mark stands.
//  - Entries beyond 128 are ignored; listed names beyond 128 stay in the list, but their nodes are
//    not looked at. Each gives one log line.
//  - A name that is listed twice loses all its places when its node is removed. A name without a
//    number is logged as number -1.
ORVANEIP_API int devcfg_check_builtin();

// What devcfg_check_builtin would do now, appended to `changes`; nothing is changed, the log lines
// are the same. 0, or -1 when a file cannot be opened or the limit of 128 nodes would be reached.
ORVANEIP_API int devcfg_preview_builtin(BuiltinChanges& changes);
