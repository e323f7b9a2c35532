// The rule file /etc/config/kfilter.xml: which texts of a device are replaced or recognised.
//
//   filter / device_node_list                  names of device nodes D
//   filter / D / device_id                     the device's identifier
//   filter / D / filter_node_list              names of its filter nodes F
//   filter / D / F / name, enable              enable: 0 or absent is off
//   filter / D / F / rule_node_list            names of its rule nodes R
//   filter / D / F / R / name, type, enable    type: 0, 1 or 2, absent -1 (device_filtering.h)
//   filter / D / F / R / target, result        4,095 bytes of text each
//
// A list is names joined by ","; empty names are skipped, blanks belong to the name, and a name
// that is listed twice is read twice. device_node_list is read as far as 1,023 bytes, the others as
// far as 511. The order of a list is the order of the records. An absent text is empty; a longer
// one than its field is cut to fit.
//
// Names that are listed twice make a small file large: one that lists more than kMaxFileRules rules
// in all, each as often as it is read, is refused as a whole.
//
// The file is only read: opened, copied into memory, closed at once. A list of records owns all it
// holds. A `tree` is an exported tree of platform/config_tree.h whose top element is `filter`; a
// null argument reads nothing. What goes wrong is told in log_Debug.
#pragma once

#include <cstddef>
#include <vector>

#include "devfilter/dev_filter.h"
#include "platform/export.h"

// Rules of one file: as many as the lists of one device have room for.
inline constexpr std::size_t kMaxFileRules = 65'536;

// Replaces the contents of `devices` with the devices of the file that have at least one filter. 0,
// or -1 when the file cannot be opened, has no top element `filter`, or lists more than
// kMaxFileRules rules; then `devices` is empty.
ORVANEIP_API int devcfg_get_filter_rules_list(std::vector<dev_filter>& devices);

// Empties `devices` and releases the memory it held. Always 0.
ORVANEIP_API int devcfg_free_filter_rules_list(std::vector<dev_filter>& devices);

// Appends the filters of the device node to `filters`. Their number.
ORVANEIP_API int get_filter_rule(void** tree, char* device_node, std::vector<filter>& filters);

// Appends the rules of the filter node to `rules`. Always 0.
ORVANEIP_API int get_rule_list(void** tree, char* device_node, char* filter_node,
                               std::vector<rule>& rules);

// Tells whether the rule file can be opened: 0, or -1. The device's node is looked up in the device
// tree (devcfg_get_device_node) and in the file, but `device` stays as it was, whatever is found.
ORVANEIP_API int devcfg_get_filter_rule(char* device_id, dev_filter& device);
