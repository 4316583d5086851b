// Texts from outside, made the UTF-8 that a JSON document has to be.
#pragma once

#include <stddef.h>

enum { REPLACEMENT_SIZE = 3 }; // bytes of U+FFFD

// Whether the `length` bytes at `text` are UTF-8: no letter that is cut, longer than it need be, a
// surrogate, or beyond U+10FFFF, and no byte that belongs to none.
bool is_utf8(const char* text, size_t length);

// Copies `text` with a U+FFFD in the place of each letter that is cut, and of each byte that
// belongs to no letter. `repaired` has room for REPLACEMENT_SIZE bytes a byte of `text`, and a
// terminator.
void repair_utf8(const char* text, char* repaired);
