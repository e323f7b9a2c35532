#pragma once

#include "platform/export.h"

// Returns whether the file at `path` can be opened for reading. When it cannot (missing, not
// readable, or a null path), logs one line.
ORVANEIP_API bool check_file_exist(char* path);
