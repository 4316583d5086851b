// The printer: one pass over the tree into one growing buffer.
#include "json/json_print.h"

#include <charconv>
#include <float.h>
#include <math.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "json/json_node.h"

namespace {

constexpr size_t first_text_size = 1024;
constexpr size_t first_depth = 16;
constexpr size_t number_size = 80; // a sign and 60 digits are the longest number

// Every writer below returns false when memory is short; the print is then given up.
struct Printer {
    char* text;
    size_t length;
    size_t capacity;
    const cJSON** open; // the objects and arrays around the present place, outermost first
    size_t depth;
    size_t open_capacity;
};

// --- The buffer.

bool grow(Printer* out, size_t extra) {
    if (extra > SIZE_MAX / 2 - out->length)
        return false;
    size_t capacity = out->capacity ? out->capacity : first_text_size;
    while (capacity < out->length + extra)
        capacity *= 2;
    char* text = static_cast<char*>(realloc(out->text, capacity));
    if (!text)
        return false;
    out->text = text;
    out->capacity = capacity;
    return true;
}

inline bool reserve(Printer* out, size_t extra) {
    return out->capacity - out->length >= extra || grow(out, extra);
}

inline void put(Printer* out, char letter) { out->text[out->length++] = letter; }

inline bool append(Printer* out, const char* text, size_t length) {
    if (!reserve(out, length))
        return false;
    memcpy(out->text + out->length, text, length);
    out->length += length;
    return true;
}

// --- Strings.

inline bool needs_escape(unsigned char letter) {
    return letter < 0x20 || letter == '"' || letter == '\\';
}

// Whether one of the eight letters in `word` needs an escape, by the classic test for a zero byte.
inline bool eight_need_escape(uint64_t word) {
    constexpr uint64_t ones = 0x0101010101010101, tops = 0x8080808080808080;
    uint64_t quote = word ^ ones * '"', backslash = word ^ ones * '\\';
    return ((((word - ones * 0x20) & ~word) | ((quote - ones) & ~quote) |
             ((backslash - ones) & ~backslash)) &
            tops) != 0;
}

// Copies up to the first letter that needs an escape, and returns where that is. There is room for
// all of it. Eight letters at a time, the last ones together with some that were copied before:
// most names are a little longer than eight letters.
inline const char* put_plain_letters(Printer* out, const char* text, const char* end) {
    constexpr ptrdiff_t eight = sizeof(uint64_t);
    const bool overlaps = end - text >= eight;
    char* to = out->text + out->length;
    uint64_t word = 0;
    while (end - text >= eight) {
        memcpy(&word, text, eight);
        if (eight_need_escape(word))
            break;
        memcpy(to, &word, eight);
        text += eight;
        to += eight;
    }
    if (overlaps && end - text < eight) {
        memcpy(&word, end - eight, eight);
        if (!eight_need_escape(word)) {
            to += end - text;
            memcpy(to - eight, &word, eight);
            text = end;
        }
    }
    while (text < end && !needs_escape(static_cast<unsigned char>(*text)))
        *to++ = *text++;
    out->length = static_cast<size_t>(to - out->text);
    return text;
}

void put_escape(Printer* out, unsigned char letter) {
    static const char letters[] = "\"\\\b\f\n\r\t";
    static const char escapes[] = "\"\\bfnrt";
    static const char digits[] = "0123456789abcdef";
    put(out, '\\');
    if (const char* found = strchr(letters, letter)) {
        put(out, escapes[found - letters]);
        return;
    }
    const char code[] = {'u', '0', '0', digits[letter >> 4], digits[letter & 15]};
    for (char part : code)
        put(out, part);
}

// `text` may be null, as the name of a member that was never given one.
inline bool print_string(Printer* out, const char* text) {
    constexpr size_t longest_escape = 6, quotes = 2;
    size_t length = text ? strlen(text) : 0;
    const char* end = text + length;
    if (!reserve(out, length + quotes))
        return false;
    put(out, '"');
    text = put_plain_letters(out, text, end);
    while (text < end) {
        if (!reserve(out, static_cast<size_t>(end - text) + longest_escape + quotes))
            return false;
        put_escape(out, static_cast<unsigned char>(*text++));
        text = put_plain_letters(out, text, end);
    }
    put(out, '"');
    return true;
}

// --- Numbers.

template <typename Integer> void put_integer(Printer* out, Integer value) {
    char* start = out->text + out->length;
    out->length +=
        static_cast<size_t>(std::to_chars(start, start + number_size, value).ptr - start);
}

// "%.1f" of a value between 1e-6 and 1e9 on either side of 0, digit for digit: to the nearest
// tenth, and from the very middle between two to the even one. The fraction is counted in units of
// 2^-60, which leaves nothing of it out from 2^-8 up, and below that it is no tenth.
void put_tenths(Printer* out, double value) {
    constexpr uint64_t one = uint64_t{1} << 60;
    double size = fabs(value);
    uint32_t whole = static_cast<uint32_t>(size);
    uint64_t tenths = static_cast<uint64_t>((size - whole) * one) * 10;
    uint64_t digit = tenths / one, rest = tenths % one;
    if (rest > one / 2 || (rest == one / 2 && digit % 2))
        ++digit;
    if (signbit(value))
        put(out, '-');
    put_integer(out, digit == 10 ? whole + 1 : whole);
    put(out, '.');
    put(out, static_cast<char>('0' + digit % 10));
}

// The C library's decimal sign is a point, for the agent sets no locale.
void put_rare(Printer* out, double value, bool whole) {
    char* start = out->text + out->length;
    int length = whole ? snprintf(start, number_size, "%.0f", value)
                       : snprintf(start, number_size, "%e", value);
    out->length += static_cast<size_t>(length);
}

void put_double(Printer* out, double value, int truncated) {
    constexpr double whole_limit = 1e60;
    constexpr double int64_limit = 9e18; // a little inside the range of int64_t
    bool whole = fabs(floor(value) - value) <= DBL_EPSILON && fabs(value) < whole_limit;
    if (fabs(truncated - value) <= DBL_EPSILON && value >= INT32_MIN && value <= INT32_MAX)
        put_integer(out, truncated);
    else if (whole && fabs(value) < int64_limit)
        put_integer(out, static_cast<int64_t>(floor(value)));
    else if (whole || fabs(value) < 1e-6 || fabs(value) > 1e9)
        put_rare(out, value, whole);
    else
        put_tenths(out, value);
}

bool print_number(Printer* out, const cJSON* node) {
    if (!reserve(out, number_size))
        return false;
    if (node->type & NODE_UINT32)
        put_integer(out, node_uint32(node));
    else if (node->type & NODE_UINT64)
        put_integer(out, node_uint64(node));
    else if (isfinite(node->valuedouble))
        put_double(out, node->valuedouble, node->valueint);
    else
        return append(out, "null", 4);
    return true;
}

// --- The tree.

bool is_object(const cJSON* node) { return (node->type & NODE_KIND) == cJSON_Object; }

bool indent(Printer* out) {
    static const char tabs[] = "\t\t\t\t\t\t\t\t";
    constexpr size_t step = sizeof tabs - 1;
    if (!reserve(out, out->depth + step))
        return false;
    for (size_t tab = 0; tab < out->depth; tab += step)
        memcpy(out->text + out->length + tab, tabs, step);
    out->length += out->depth;
    return true;
}

bool enter(Printer* out, const cJSON* container) {
    if (out->depth == out->open_capacity) {
        size_t capacity = out->open_capacity ? out->open_capacity * 2 : first_depth;
        void* open = realloc(out->open, capacity * sizeof *out->open);
        if (!open)
            return false;
        out->open = static_cast<const cJSON**>(open);
        out->open_capacity = capacity;
    }
    out->open[out->depth++] = container;
    return is_object(container) ? append(out, "{\n", 2) : append(out, "[", 1);
}

bool leave(Printer* out) {
    const cJSON* container = out->open[--out->depth];
    return is_object(container) ? indent(out) && append(out, "}", 1) : append(out, "]", 1);
}

bool is_member(const Printer* out) {
    return out->depth > 0 && is_object(out->open[out->depth - 1]);
}

// What stands before a value and after it depends on what it stands in.
bool print_name(Printer* out, const cJSON* node) {
    if (!is_member(out))
        return true;
    return indent(out) && print_string(out, node->string) && append(out, ":\t", 2);
}

bool print_separator(Printer* out, const cJSON* node) {
    if (is_member(out))
        return node->next ? append(out, ",\n", 2) : append(out, "\n", 1);
    return !node->next || append(out, ", ", 2);
}

// A whole value, or the opening of an object or array.
bool print_value(Printer* out, const cJSON* node) {
    switch (node->type & NODE_KIND) {
    case cJSON_False:
        return append(out, "false", 5);
    case cJSON_True:
        return append(out, "true", 4);
    case cJSON_NULL:
        return append(out, "null", 4);
    case cJSON_Number:
        return print_number(out, node);
    case cJSON_String:
        return print_string(out, node->valuestring);
    case cJSON_Raw:
        return node->valuestring && append(out, node->valuestring, strlen(node->valuestring));
    case cJSON_Array:
    case cJSON_Object:
        return enter(out, node);
    default:
        return false;
    }
}

// Ends the value `*node`, and every object and array whose last value that is. `*node` becomes the
// value to print next, or null.
bool advance(Printer* out, const cJSON** node) {
    while (out->depth > 0) {
        if (!print_separator(out, *node))
            return false;
        if ((*node)->next) {
            *node = (*node)->next;
            return true;
        }
        *node = out->open[out->depth - 1];
        if (!leave(out))
            return false;
    }
    *node = nullptr;
    return true;
}

// Without recursion: the depth of a document is its author's choice, the stack is the thread's.
bool print_tree(Printer* out, const cJSON* node) {
    while (node) {
        size_t depth = out->depth;
        if (!print_name(out, node) || !print_value(out, node))
            return false;
        bool entered = out->depth > depth;
        if (entered && node->child) {
            node = node->child;
            continue;
        }
        if ((entered && !leave(out)) || !advance(out, &node))
            return false;
    }
    return true;
}

} // namespace

char* printJson(const cJSON* root) {
    Printer out = {};
    bool printed = root && print_tree(&out, root) && append(&out, "", 1);
    free(out.open);
    if (!printed) {
        free(out.text);
        return nullptr;
    }
    char* text = static_cast<char*>(realloc(out.text, out.length));
    return text ? text : out.text;
}
