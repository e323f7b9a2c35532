#pragma once

#include "platform/export.h"

// True when the file at `path` can be opened for reading. Otherwise, also for a file that exists
// but cannot be read and for a null path, logs one line and returns false.
ORVANEIP_API bool check_file_exist(char* path);
