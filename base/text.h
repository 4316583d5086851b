// Texts that no buffer worth keeping would hold, such as a whole report: they are measured first.
#pragma once

#include <stdarg.h>
#include <stdlib.h>

#include <memory>

struct FreeText {
    void operator()(char* text) const { free(text); }
};

// A text of malloc's that goes with whoever holds it.
using OwnedText = std::unique_ptr<char, FreeText>;

// The formatted text, which is the caller's to free; null where memory is short. Uses `arguments`
// up. Is cut at the length that was measured where another thread changed an argument in between.
char* format_text(const char* format, va_list arguments) __attribute__((format(printf, 1, 0)));
