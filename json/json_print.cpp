// The printer: the tree is walked twice, first to measure its text, then to write it into a buffer
// of that size.
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

inline int kind_of(const cJSON* node) { return node->type & NODE_KIND; }

inline bool is_object(const cJSON* node) { return kind_of(node) == cJSON_Object; }

inline size_t length_of(const char* text) { return text ? strlen(text) : 0; }

// A member may never have been given a name.
inline size_t length_of_name(const cJSON* node) {
    size_t length = node_name_length(node);
    return length ? length : length_of(node->string);
}

// --- The walk.

// The objects and arrays around the present place, outermost first.
struct Path {
    const cJSON** open;
    size_t depth;
    size_t room;
};

constexpr size_t first_depth = 16;

bool enter(Path* path, const cJSON* container) {
    if (path->depth == path->room) {
        size_t room = path->room ? path->room * 2 : first_depth;
        // NOLINTNEXTLINE(bugprone-sizeof-expression): these are pointers, not what they point to.
        void* open = realloc(path->open, room * sizeof *path->open);
        if (!open)
            return false;
        path->open = static_cast<const cJSON**>(open);
        path->room = room;
    }
    path->open[path->depth++] = container;
    return true;
}

bool stands_in_object(const Path* path) {
    return path->depth > 0 && is_object(path->open[path->depth - 1]);
}

// Tells `out` what comes, part by part: name(), open() and close(), scalar(), separator(). False
// where memory is short, or a node is of no type. Without recursion: the depth of a document is its
// author's choice, the stack is the thread's.
template <class Out> bool walk(Path* path, const cJSON* node, Out* out) {
    bool is_member = false;
    for (;;) {
        if (is_member && !out->name(node, path->depth))
            return false;
        if (kind_of(node) == cJSON_Object || kind_of(node) == cJSON_Array) {
            if (!enter(path, node))
                return false;
            out->open(is_object(node));
            if (node->child) {
                is_member = is_object(node);
                node = node->child;
                continue;
            }
            out->close(is_object(node), --path->depth);
        } else if (!out->scalar(node)) {
            return false;
        }
        // The value has ended, and with it every object and array whose last one it is.
        while (path->depth > 0 && !node->next) {
            out->separator(is_member, false);
            node = path->open[--path->depth];
            out->close(is_member, path->depth);
            is_member = stands_in_object(path);
        }
        if (path->depth == 0)
            return true;
        out->separator(is_member, true);
        node = node->next;
    }
}

// --- Measuring.

// At least as many digits as the number has, and at most one more.
inline size_t longest_digits(uint64_t value) {
    size_t bits = 64 - static_cast<size_t>(__builtin_clzll(value | 1));
    return bits * 1233 / 4096 + 1; // times log10(2)
}

// Of a double: as "%d", "%e" or "%.1f"; as "%.0f" of 64 bits; as "%.0f".
size_t longest_double(double value) {
    if (fabs(value) <= 1e9)
        return sizeof "-1000000000.0";
    return fabs(value) < 1e19 ? sizeof "-10000000000000000000" : 64;
}

inline size_t longest_number(const cJSON* node) {
    if (node->type & NODE_UINT32)
        return longest_digits(node_uint32(node));
    if (node->type & NODE_UINT64)
        return longest_digits(node_uint64(node));
    return longest_double(node->valuedouble);
}

// The size of a text in which no letter needs an escape.
struct Measure {
    size_t size;

    bool name(const cJSON* node, size_t depth) {
        size += length_of_name(node) + depth + 4;
        return true;
    }
    void open(bool object) { size += object ? 2 : 1; }
    void close(bool object, size_t depth) { size += object ? depth + 1 : 1; }
    void separator(bool, bool) { size += 2; }
    bool scalar(const cJSON* node) {
        switch (kind_of(node)) {
        case cJSON_False:
        case cJSON_True:
        case cJSON_NULL:
            size += sizeof "false";
            return true;
        case cJSON_Number:
            size += longest_number(node);
            return true;
        case cJSON_String:
        case cJSON_Raw:
            size += length_of(node->valuestring) + 2;
            return node->valuestring || kind_of(node) == cJSON_String;
        default:
            return false;
        }
    }
};

// --- The buffer.

// There is always room for the rest of the document without escapes, and `spare` bytes besides.
struct Text {
    char* begin;
    char* end;
    size_t size;
    size_t spare;
};

// What is written in whole words may reach over the end.
constexpr size_t overhang = 8;

bool make_text(Text* text, size_t size) {
    text->begin = text->end = static_cast<char*>(malloc(size + overhang));
    text->size = size + overhang;
    return text->begin;
}

bool enlarge(Text* text, size_t more) {
    size_t length = static_cast<size_t>(text->end - text->begin);
    char* larger =
        more > SIZE_MAX - text->size ? nullptr : static_cast<char*>(malloc(text->size + more));
    if (!larger)
        return false;
    memcpy(larger, text->begin, length);
    free(text->begin);
    text->begin = larger;
    text->end = larger + length;
    text->size += more;
    text->spare += more;
    return true;
}

bool take_from_spare(Text* text, size_t extra) {
    if (extra > text->spare && !enlarge(text, extra + text->size / 8))
        return false;
    text->spare -= extra;
    return true;
}

inline void put(Text* out, char letter) { *out->end++ = letter; }

template <size_t Size> inline void put(Text* out, const char (&text)[Size]) {
    memcpy(out->end, text, Size - 1);
    out->end += Size - 1;
}

// --- Strings.

inline bool needs_escape(char letter) {
    return static_cast<unsigned char>(letter) < 0x20 || letter == '"' || letter == '\\';
}

// Whether one of the letters in `word` needs an escape, by the classic test for a zero byte.
template <class Word> inline bool any_needs_escape(Word word) {
    constexpr Word ones = static_cast<Word>(0x0101010101010101), tops = ones << 7;
    Word quote = word ^ ones * '"', backslash = word ^ ones * '\\';
    return (((word - ones * 0x20) | (quote - ones) | (backslash - ones)) & ~word & tops) != 0;
}

// Copies `length` letters, at least a word of them, unless one needs an escape. The last word
// overlaps the one before.
template <class Word> inline bool copy_words(char* to, const char* from, size_t length) {
    Word word;
    for (size_t at = 0; at + sizeof word < length; at += sizeof word) {
        memcpy(&word, from + at, sizeof word);
        if (any_needs_escape(word))
            return false;
        memcpy(to + at, &word, sizeof word);
    }
    memcpy(&word, from + length - sizeof word, sizeof word);
    memcpy(to + length - sizeof word, &word, sizeof word);
    return !any_needs_escape(word);
}

// What was copied is no matter where one needs an escape.
inline bool copy_plain(char* to, const char* from, size_t length) {
    if (length >= sizeof(uintptr_t))
        return copy_words<uintptr_t>(to, from, length);
    if (length >= sizeof(uint32_t))
        return copy_words<uint32_t>(to, from, length);
    bool plain = true;
    for (size_t i = 0; i < length; ++i) {
        to[i] = from[i];
        plain = plain && !needs_escape(from[i]);
    }
    return plain;
}

constexpr char escaped_letters[] = "\"\\\b\f\n\r\t";
constexpr char escapes[] = "\"\\bfnrt";
constexpr size_t longest_escape = 6;

void put_escape(Text* out, char letter) {
    static const char digits[] = "0123456789abcdef";
    put(out, '\\');
    if (const void* found = memchr(escaped_letters, letter, sizeof escaped_letters - 1)) {
        put(out, escapes[static_cast<const char*>(found) - escaped_letters]);
        return;
    }
    put(out, "u00");
    put(out, digits[letter >> 4]);
    put(out, digits[letter & 15]);
}

// Piece by piece: most of them are plain.
bool put_with_escapes(Text* out, const char* text, const char* end) {
    constexpr ptrdiff_t longest_piece = 16;
    while (text < end) {
        ptrdiff_t piece = end - text < longest_piece ? end - text : longest_piece;
        if (copy_plain(out->end, text, static_cast<size_t>(piece))) {
            out->end += piece;
            text += piece;
            continue;
        }
        if (!take_from_spare(out, static_cast<size_t>(piece) * (longest_escape - 1)))
            return false;
        for (const char* rest = text + piece; text < rest; ++text)
            needs_escape(*text) ? put_escape(out, *text) : put(out, *text);
    }
    return true;
}

inline bool put_string(Text* out, const char* text, size_t length) {
    put(out, '"');
    if (copy_plain(out->end, text, length))
        out->end += length;
    else if (!put_with_escapes(out, text, text + length))
        return false;
    put(out, '"');
    return true;
}

// --- Numbers.

constexpr size_t number_size = 64; // a sign and 60 digits are the longest number

template <typename Integer> inline void put_integer(Text* out, Integer value) {
    out->end = std::to_chars(out->end, out->end + number_size, value).ptr;
}

// A division of 64 bits is a long way on a processor of 32.
inline void put_counter(Text* out, uint64_t value) {
    if (value <= UINT32_MAX)
        put_integer(out, static_cast<uint32_t>(value));
    else
        put_integer(out, value);
}

// "%.1f" of a value between 1e-6 and 1e9 on either side of 0, digit for digit: to the nearest
// tenth, and from the very middle between two to the even one. The fraction is counted in units of
// 2^-60, which leaves nothing of it out from 2^-8 up, and below that it is no tenth.
void put_tenths(Text* out, double value) {
    constexpr uint64_t one = uint64_t{1} << 60;
    double size = fabs(value);
    uint32_t whole = static_cast<uint32_t>(size);
    uint64_t tenths = static_cast<uint64_t>((size - whole) * static_cast<double>(one)) * 10;
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
void put_rare(Text* out, double value, bool whole) {
    out->end += whole ? snprintf(out->end, number_size, "%.0f", value)
                      : snprintf(out->end, number_size, "%e", value);
}

void put_double(Text* out, double value, int truncated) {
    constexpr double whole_limit = 1e60;
    constexpr double int64_limit = 9e18; // a little inside the range of int64_t
    if (fabs(truncated - value) <= DBL_EPSILON && value >= INT32_MIN && value <= INT32_MAX)
        return put_integer(out, truncated);
    bool whole = fabs(floor(value) - value) <= DBL_EPSILON && fabs(value) < whole_limit;
    if (whole && fabs(value) < int64_limit)
        put_integer(out, static_cast<int64_t>(floor(value)));
    else if (whole || fabs(value) < 1e-6 || fabs(value) > 1e9)
        put_rare(out, value, whole);
    else
        put_tenths(out, value);
}

inline void put_number(Text* out, const cJSON* node) {
    if (node->type & NODE_UINT32)
        put_integer(out, node_uint32(node));
    else if (node->type & NODE_UINT64)
        put_counter(out, node_uint64(node));
    else if (isfinite(node->valuedouble))
        put_double(out, node->valuedouble, node->valueint);
    else
        put(out, "null");
}

// --- Writing.

inline void put_indent(Text* out, size_t depth) {
    static const char tabs[] = "\t\t\t\t\t\t\t\t";
    constexpr size_t step = sizeof tabs - 1;
    static_assert(step <= overhang);
    for (size_t tab = 0; tab < depth; tab += step)
        memcpy(out->end + tab, tabs, step);
    out->end += depth;
}

bool put_raw(Text* out, const char* text) {
    size_t length = strlen(text);
    memcpy(out->end, text, length);
    out->end += length;
    return true;
}

struct Writer {
    Text text;

    bool name(const cJSON* node, size_t depth) {
        put_indent(&text, depth);
        if (!put_string(&text, node->string, length_of_name(node)))
            return false;
        put(&text, ":\t");
        return true;
    }
    void open(bool object) { object ? put(&text, "{\n") : put(&text, "["); }
    void close(bool object, size_t depth) {
        if (object)
            put_indent(&text, depth);
        put(&text, object ? '}' : ']');
    }
    void separator(bool object, bool more) {
        if (more)
            object ? put(&text, ",\n") : put(&text, ", ");
        else if (object)
            put(&text, '\n');
    }
    bool scalar(const cJSON* node) {
        switch (kind_of(node)) {
        case cJSON_False:
            put(&text, "false");
            return true;
        case cJSON_True:
            put(&text, "true");
            return true;
        case cJSON_NULL:
            put(&text, "null");
            return true;
        case cJSON_Number:
            put_number(&text, node);
            return true;
        case cJSON_String:
            return put_string(&text, node->valuestring, length_of(node->valuestring));
        default:
            return put_raw(&text, node->valuestring);
        }
    }
};

char* write_text(Path* path, const cJSON* root, size_t size) {
    Writer writer = {};
    if (!make_text(&writer.text, size))
        return nullptr;
    Text& text = writer.text;
    if (!walk(path, root, &writer)) {
        free(text.begin);
        return nullptr;
    }
    put(&text, '\0');
    char* fitting =
        static_cast<char*>(realloc(text.begin, static_cast<size_t>(text.end - text.begin)));
    // cppcheck-suppress memleak ; the caller frees it
    return fitting ? fitting : text.begin;
}

} // namespace

char* printJson(const cJSON* root) {
    Path path = {};
    Measure measure = {1};
    bool complete = root && walk(&path, root, &measure);
    char* text = complete ? write_text(&path, root, measure.size) : nullptr;
    free(path.open);
    return text;
}
