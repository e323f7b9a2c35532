// Search text as SQL LIKE patterns.
#pragma once

#include <string>
#include <vector>

#include "platform/export.h"

// Appends a pattern for each term of the search text `input` that `patterns` does not contain yet,
// in the order in which the terms first appear:
//  - Terms are separated by spaces. The bytes between the first and the last double quote are taken
//    as they are, spaces, plus signs and inner quotes included; a lone double quote is dropped.
//  - A run of plus signs between two parts of a term becomes "%%", the wildcard; at the start or
//    the end of a term it is dropped. A "%%" at the end of a term is removed even if the user typed
//    it: a term of nothing else gives an empty pattern.
//  - A single quote is doubled, for a string literal in single quotes. Nothing else makes the
//    pattern safe: a caller that binds it as a parameter undoes the doubling.
//  - The user's % and _ keep their meaning; there is no escape character. Other bytes, UTF-8 ones
//    too, stay as they are.
// No wildcard is added at the ends of a pattern. A text without a term leaves `patterns` as it is,
// and so does null. The cost is linear in the input and the patterns before it, for all of them.
ORVANEIP_API void check_abnormal_char_for_special_for_SQL(const char* input,
                                                          std::vector<std::string>& patterns);
