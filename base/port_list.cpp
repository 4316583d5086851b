// Port lists are written run by run and read field by field.
#include "base/port_list.h"

#include <charconv>
#include <stdio.h>
#include <string.h>

#include "base/port_set.h"
#include "platform/system.h"

namespace {

// --- Bitmap to text.

// The first bit after `bit` that is not set.
int end_of_run(const uint32_t* bitmap, int bit, int ports) {
    while (bit < ports && has_bit(bitmap, bit))
        ++bit;
    return bit;
}

} // namespace

int Bitmap2numstr(const uint32_t* bitmap, char* text) {
    int ports = sys_logic_port_num_ret();
    if (ports > PORT_SET_SIZE)
        ports = PORT_SET_SIZE;
    const char* separator = "";
    char* end = text + strlen(text);
    for (int first = 0; first < ports; ++first) {
        if (!has_bit(bitmap, first))
            continue;
        int last = end_of_run(bitmap, first, ports) - 1;
        end += sprintf(end, "%s%d", separator, first + 1);
        if (last > first)
            end += sprintf(end, "-%d", last + 1);
        separator = ",";
        first = last;
    }
    return 0;
}

// --- Text to bitmap.

namespace {

void set_bits(uint32_t* bitmap, uint32_t first, uint32_t end) {
    for (uint32_t bit = first; bit < end; ++bit)
        set_bit(bitmap, bit);
}

// The digits at `text` as a number, the highest one where they are too many, 0 where there are
// none. `*end` is behind them.
uint32_t leading_number(const char* text, const char* limit, const char** end) {
    uint32_t number = 0;
    auto [at, error] = std::from_chars(text, limit, number);
    *end = at;
    return error == std::errc::result_out_of_range ? UINT32_MAX : number;
}

// One field between two commas: "3", or "3-5", which must rise.
int add_field(const char* field, const char* limit, uint32_t* bitmap) {
    const char* dash;
    uint32_t first = leading_number(field, limit, &dash);
    if (first == 0 || (dash < limit && memchr(dash + 1, '-', limit - dash - 1)))
        return -1;
    set_bits(bitmap, first - 1, first);
    if (dash == limit)
        return 0;
    uint32_t last = leading_number(dash + 1, limit, &dash);
    if (last == 0 || first >= last)
        return -1;
    set_bits(bitmap, first, last);
    return 0;
}

} // namespace

int Numstr2bitmap(const char* text, uint32_t* bitmap) {
    if (text[strspn(text, "0123456789-,")])
        return -1;
    for (const char* field = text; *field;) {
        size_t length = strcspn(field, ",");
        if (length > 0 && add_field(field, field + length, bitmap))
            return -1;
        field += length;
        field += *field == ',';
    }
    return 0;
}
