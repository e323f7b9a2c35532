#pragma once

#include <string>
#include <vector>

#include "platform/export.h"

// Appends the items of `text` to `items`, which is not emptied first, and returns `items`. Two
// delimiters in a row and a leading delimiter give an empty item, a single trailing delimiter does
// not, and an empty text gives no items. Nothing is trimmed.
ORVANEIP_API std::vector<std::string>& split(const std::string& text, char delimiter,
                                             std::vector<std::string>& items);

// Returns the items of `text`, by the same rules.
ORVANEIP_API std::vector<std::string> split(const std::string& text, char delimiter);
