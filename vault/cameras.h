// Applying changes of a camera to the channels that carry its `guid`, in every data source. A
// change that the database cannot store is logged there and not reported here.
#pragma once

#include "platform/export.h"

// Removes the channels of a camera that is gone. An empty `guid` removes the channels whose guid is
// empty, a null one removes nothing. Returns 0, also when no channel carries `guid`.
ORVANEIP_API int notify_camera_removed(char* guid);

// Gives the channels of a camera its new name and changes nothing else of them; `ignored_number` is
// not read. Returns 0, also when no channel carries `guid`; -1 when `guid` is null or empty, or
// `name` is null.
ORVANEIP_API int notify_camera_modified(char* guid, char* name, int ignored_number);
