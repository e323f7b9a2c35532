#pragma once

#include <string>
#include <vector>

#include "platform/export.h"

// Appends the items of `text` to `items`, which is not emptied first, and returns `items`. Two
// delimiters in a row and a leading one give an empty item, a single trailing one gives none, an
// empty text gives no items; nothing is trimmed.
ORVANEIP_API std::vector<std::string>& split(const std::string& text, char delimiter,
                                             std::vector<std::string>& items);

// The items of `text`, by the same rules.
ORVANEIP_API std::vector<std::string> split(const std::string& text, char delimiter);
