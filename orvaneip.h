// liborvaneip: the device configuration of the metadata service. This header includes every
// exported declaration. All functions keep the following rules; each declaration adds its own.
//
//  1. No state. There is no initialisation and no shutdown. Every function may be called at any
//     time; it opens what it needs and releases it before it returns.
//  2. Threads. Any two calls may run at once, unless they share an argument that one of them
//     writes. Each single change of a store is atomic, and concurrent changes take effect one after
//     the other. A call that checks before it changes (is the name free? what are the other
//     fields?) does so in separate steps: a program that changes the same data source in two
//     threads or processes at once has to serialise these calls.
//  3. Results. Each declaration states its kind of result: 0 or -1; a result code of
//     foundation/result_codes.h or a status of platform/vault_status.h; a pointer or null; true or
//     false. devcfg_result_text returns the meaning of a code in words.
//  4. Strings are NUL-terminated bytes, UTF-8 by convention. They are compared byte for byte and
//     never converted. A char* argument is only read, unless its declaration calls it a buffer. A
//     null argument gives the result that the declaration states, never a crash, unless the
//     declaration says that the argument must not be null.
//  5. Buffers. Each has a stated size in bytes, including the terminator, and is never written
//     beyond it. A longer string is cut to fit, which is not a failure.
//  6. Out-parameters are written only in the cases that the declaration states: initialise them
//     before the call. Results are appended to lists, which are not emptied first.
//  7. Ownership. Arguments remain the caller's. The caller releases a returned json_object with
//     json_object_put and a returned table_info with devcfg_del_tb_info.
//  8. Memory. When there is no memory for a result that is a block of the malloc family, a
//     json_object or an SQLite result, the function returns its failure result. Any other lack of
//     memory throws std::bad_alloc, the only exception that reaches a caller. In both cases
//     everything that the call acquired is released, and every single change of a store is made
//     completely or not at all; of several changes some may be made, as after any failure.
//  9. Log. Failures are written to the platform's log (platform/log_sinks.h). Nothing else is
//     output; only LogConsole writes to standard output.
#pragma once

#include "devfilter/dev_filter.h"
#include "devfilter/device_filtering.h"
#include "devfilter/rule_file.h"
#include "devtree/builtin_devices.h"
#include "devtree/device_events.h"
#include "devtree/device_info.h"
#include "devtree/device_tree.h"
#include "foundation/file_exist.h"
#include "foundation/identifiers.h"
#include "foundation/logging.h"
#include "foundation/result_codes.h"
#include "foundation/split.h"
#include "foundation/time_zone.h"
#include "frames/frame_search.h"
#include "frames/packet.h"
#include "platform/command_runner.h"
#include "platform/config_tree.h"
#include "platform/config_tree_limits.h"
#include "platform/event_service.h"
#include "platform/export.h"
#include "platform/log_sinks.h"
#include "platform/platform_layer.h"
#include "platform/vault_database.h"
#include "platform/vault_extensions.h"
#include "platform/vault_limits.h"
#include "platform/vault_status.h"
#include "schema/compare_schema.h"
#include "schema/load_schema.h"
#include "schema/table_info.h"
#include "schema/update_table.h"
#include "search/like_patterns.h"
#include "search/search_regex.h"
#include "service/event_hooks.h"
#include "service/net_info.h"
#include "service/service_commands.h"
#include "sqlite/csqlite.h"
#include "textfilter/rule.h"
#include "textfilter/rule_list.h"
#include "textfilter/text_filter.h"
#include "vault/add_device.h"
#include "vault/cameras.h"
#include "vault/data_source.h"
#include "vault/device_documents.h"
#include "vault/filters.h"
#include "vault/last_receive_time.h"
#include "vault/lookups.h"
#include "vault/metadata_remove.h"
#include "vault/modify_device.h"
