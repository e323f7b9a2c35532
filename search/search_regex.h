// Search text as a regular expression of the document store.
#pragma once

#include <string>

#include "platform/export.h"

// Appends one expression for the search text `input` to `output`, with the terms as alternatives:
//  - A run of spaces becomes the bar «|», a run of plus signs «.*». The bytes between the first and
//    the last double quote are taken literally; a lone double quote is a byte like others.
//  - The user's . ? ^ | + * \ [ ] ( ) $ are preceded by a backslash, everything else stays as it
//    is: braces too, which an engine may read as a repetition («x{2}»).
// Then alternatives of nothing but «.*» are removed from all of `output`, its previous contents
// included, when it is longer than 3 bytes: «.*|» at its start, once; each «|.*|», which becomes
// one bar; «|.*» at its end, if it is still longer than 3 bytes. A bar that the user typed, which
// has a backslash, does not end an alternative: «x|+» gives «x\|.*».
//
// The expression has no anchors and no flags. Null is read as an empty text. The cost is linear in
// the input and the output, but each removal of a «|.*|» logs the whole output, so the log can grow
// with the square of the input.
ORVANEIP_API void check_abnormal_char_for_special_for_mongo(const char* input, std::string& output);
