// The event service: the events that are active at present, each with its id.
#pragma once

#include <string>

#include "platform/export.h"

// Removes an active event. Returns non-zero when the event service removed it, and 0 when it did
// not: there is no such event, or the service failed and logged why.
//
// The embedded platform keeps the ids of the active events durably in a database file in the
// directory of the vault database (in the default directory when the vault database is on a
// server). The file is events.db, or active_events.db when the vault database itself is named
// events.db. It is an SQLite file with the table `active_event (event_id TEXT PRIMARY KEY)`,
// created on first use; programs that raise events insert into this table. A file that is not such
// a database is not changed. Log lines have the tag "[events]".
ORVANEIP_API int aevt_remove_event(std::string event_id);
