#pragma once

#include "platform/export.h"

// Returns the seconds to add to UTC to get the local standard time: positive east of Greenwich
// (UTC+8 gives 28800), and the same in summer and winter. Reads the zone from TZ or the system's
// setting. Thread-safe unless another thread changes the environment.
ORVANEIP_API long get_timezone_diff();
