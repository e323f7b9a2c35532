// The event service: the events that are active at present, each with its id.
#pragma once

#include <string>

#include "platform/export.h"

// Removes an active event. Returns non-zero when the event service removed it, and 0 when it did
// not: there is no such event, or the service failed and logged why.
//
// The embedded platform keeps the ids of the active events in the vault database; aevt_add_event
// and aevt_list_events are in platform/vault_extensions.h. Programs may still insert events into an
// SQLite file beside the vault, events.db (active_events.db beside a vault that is itself named
// events.db), into the table
// `active_event (event_id TEXT PRIMARY KEY)`: every call first moves them into the vault. A file
// that is not such a database is left alone, and logged with the tag "[events]".
ORVANEIP_API int aevt_remove_event(std::string event_id);
