// The event service: the events that are active at present, each under its id.
#pragma once

#include <string>

#include "platform/export.h"

// Removes an active event. Non-zero when the event service removed it, 0 when it did not: there is
// no such event, or it could not be reached (and logged why).
//
// The embedded platform keeps the active event ids durably in the file events.db in the vault
// database's folder (in its default folder when the vault database is a server), or in
// active_events.db there when the vault database itself is named events.db: one SQLite table
// `active_event (event_id TEXT PRIMARY KEY)`, created on first use; the programs that raise events
// insert into it. A file that is no such database is left alone.
ORVANEIP_API int aevt_remove_event(std::string event_id);
