// Search text as SQL LIKE patterns.
#pragma once

#include <string>
#include <vector>

#include "platform/export.h"

// Appends a pattern for each term of the search text `input` that `patterns` does not hold yet, in
// the order in which the terms first appear:
//  - Terms are separated by spaces. The bytes between the first and the last double quote are taken
//    as they are, spaces, plus signs and inner quotes included; a lone double quote is dropped.
//  - A run of plus signs between two parts of a term becomes "%%", the wildcard; at the start or
//    the end of a term there is none. A "%%" at the end of a term goes too when the user typed it:
//    a term that is nothing else gives an empty pattern.
//  - A single quote is doubled, for a string literal in single quotes. That is all that makes the
//    pattern safe: a caller that binds it as a parameter undoes the doubling.
//  - The user's % and _ keep their meaning; there is no escape character. Other bytes, UTF-8 ones
//    too, stay as they are.
// A pattern has no wildcard at its ends. A text without a term leaves `patterns` as it is, and so
// does null. The cost grows with the input and the patterns held before, whatever they are.
ORVANEIP_API void check_abnormal_char_for_special_for_SQL(const char* input,
                                                          std::vector<std::string>& patterns);
