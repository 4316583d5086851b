// Formatted twice: for the length, then for the text.
#include "base/text.h"

#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>

char* format_text(const char* format, va_list arguments) {
    va_list again;
    va_copy(again, arguments);
    int length = vsnprintf(nullptr, 0, format, arguments);
    size_t size = static_cast<size_t>(length) + 1;
    char* text = length < 0 ? nullptr : static_cast<char*>(calloc(size, 1));
    if (text)
        vsnprintf(text, size, format, again);
    va_end(again);
    return text;
}
