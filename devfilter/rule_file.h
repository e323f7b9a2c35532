// The rule file /etc/config/kfilter.xml: which texts of a device are replaced or recognised.
//
//   filter / device_node_list                  names of device nodes D
//   filter / D / device_id                     the device's identifier
//   filter / D / filter_node_list              names of its filter nodes F
//   filter / D / F / name, enable              enable: 0 or absent is disabled
//   filter / D / F / rule_node_list            names of its rule nodes R
//   filter / D / F / R / name, type, enable    type: 0, 1 or 2, absent -1 (device_filtering.h)
//   filter / D / F / R / target, result
//
// A list is names joined by ","; empty names are skipped, spaces belong to the name, and a name
// that is listed twice is read twice. The order of a list is the order of the records. An absent
// text is empty; a text that is longer than its field of the record is cut to fit.
//
// The file is only read: opened, copied into memory, closed at once. The records own all they hold.
// A `tree` is an exported tree of platform/config_tree.h whose top element is `filter`; a null
// argument reads nothing. Failures are logged in log_Debug.
#pragma once

#include <cstddef>
#include <vector>

#include "devfilter/dev_filter.h"
#include "platform/export.h"

// Sizes in bytes, terminator included, to which lists are cut when they are read: device_node_list,
// and each filter_node_list and rule_node_list.
inline constexpr std::size_t kFilterDeviceListBytes = 1024;
inline constexpr std::size_t kFilterListBytes = 512;

// The largest number of rules that a file may list, each counted as often as it is read: as many as
// the lists of one device can name. Names that are listed twice make a small file large; a file
// beyond this limit is refused as a whole.
inline constexpr std::size_t kMaxFileRules = 65'536;

// Replaces the contents of `devices` with the devices of the file that have at least one filter.
// Returns 0, or -1 when the file cannot be opened, has no top element `filter`, or lists more than
// kMaxFileRules rules; then `devices` is empty.
ORVANEIP_API int devcfg_get_filter_rules_list(std::vector<dev_filter>& devices);

// Empties `devices` and releases its memory. Always returns 0.
ORVANEIP_API int devcfg_free_filter_rules_list(std::vector<dev_filter>& devices);

// Appends the filters of the device node to `filters`. Returns their number.
ORVANEIP_API int get_filter_rule(void** tree, char* device_node, std::vector<filter>& filters);

// Appends the rules of the filter node to `rules`. Always returns 0.
ORVANEIP_API int get_rule_list(void** tree, char* device_node, char* filter_node,
                               std::vector<rule>& rules);

// Returns 0 when the rule file can be opened, otherwise -1. Looks the device's node up in the
// device tree (devcfg_get_device_node) and in the rule file, but leaves `device` unchanged in any
// case.
ORVANEIP_API int devcfg_get_filter_rule(char* device_id, dev_filter& device);
