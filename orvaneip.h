// liborvaneip: the device configuration of the metadata service. This header includes every
// exported declaration; each says what is its own, and all of them keep these rules:
//
//  1. No state. There is no initialisation and no shutdown; every function may be called at any
//     time, opens what it needs and releases it before it returns.
//  2. Threads. Any two calls may run at once, as long as they do not share an argument that either
//     writes. Single changes of a store take effect whole, in some order; a call that looks before
//     it changes (is the name free? what are the other fields?) does so in separate steps, so who
//     changes the same data source from two places at once has to serialise that.
//  3. Results. A function's declaration names its family: 0 or -1; a result code of
//     foundation/result_codes.h or a status of platform/vault_status.h; a pointer or null; true or
//     false. devcfg_result_text gives the meaning of a code in words.
//  4. Texts are NUL-terminated byte strings, UTF-8 by convention; they are compared byte for byte
//     and never converted. A char* argument is only read, unless it is called a buffer. Null is a
//     caller's error that gets the stated result, never a crash, unless the declaration says that
//     it must not be null.
//  5. Buffers. Each has a stated size in bytes, terminator included, and is never written beyond
//     it. A longer text is cut to fit, which is no failure.
//  6. Out-parameters are written only on the paths that the declaration names: set them before the
//     call. Lists are appended to, never emptied first.
//  7. Ownership. Arguments stay the caller's. A returned json_object is released with
//     json_object_put, a returned table_info with devcfg_del_tb_info.
//  8. Memory. Where a function that gives back a block of the malloc family, a json_object or an
//     SQLite result has no memory for it, it answers with its failure result. Otherwise
//     std::bad_alloc reaches the caller, the only exception there is. Either way everything that
//     the call took is released, and no single change of a store is half made; of several changes
//     some may be made, as after any failure.
//  9. Log. Failures are told in the log of the platform (platform/log_sinks.h), there is no other
//     output.
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
#include "platform/event_service.h"
#include "platform/export.h"
#include "platform/log_sinks.h"
#include "platform/platform_layer.h"
#include "platform/vault_database.h"
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
#include "vault/filters.h"
#include "vault/list_devices.h"
#include "vault/lookups.h"
#include "vault/metadata_remove.h"
#include "vault/modify_device.h"
