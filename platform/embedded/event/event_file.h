// The file of active events that programs may still insert into: one SQLite table
// `active_event (event_id TEXT PRIMARY KEY)` beside the vault.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace orvaneplatform {

// The file's name, and the one that it has when the vault itself has that name. Other programs look
// for these names: they must not change.
inline constexpr char kEventFileName[] = "events.db";
inline constexpr char kOtherEventFileName[] = "active_events.db";

// Calls `store` with the event ids of the file, if it has any, and removes them from the file after
// that; the file is locked for other writers meanwhile. A file that is not an event file, or that
// cannot be opened, is left alone, and logged. Throws base::Failure, also that of `store`; then the
// file is unchanged.
void migrate_events(const std::function<void(const std::vector<std::string>& event_ids)>& store);

}  // namespace orvaneplatform
