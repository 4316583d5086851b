// UTF-8 by the table of its letters.
#include "json/utf8.h"

#include <stdint.h>
#include <string.h>

namespace {

// Letters by their first byte. The narrower limits of a second byte keep out overlong forms,
// surrogates and what lies beyond the last letter; every later byte is one of 80 to BF.
struct LetterForm {
    uint8_t first_low, first_high;
    uint8_t second_low, second_high;
    uint8_t length;
};

const LetterForm forms[] = {
    {0x01, 0x7F, 0x00, 0x00, 1}, {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3},
    {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3}, {0xEE, 0xEF, 0x80, 0xBF, 3},
    {0xF0, 0xF0, 0x90, 0xBF, 4}, {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4},
};

struct Letter {
    size_t length; // of what is there of it, at least 1
    bool whole;
};

bool within(char byte, uint8_t low, uint8_t high) {
    uint8_t value = static_cast<uint8_t>(byte);
    return value >= low && value <= high;
}

// A terminator fits into no form, so nothing behind it is read.
Letter read_letter(const char* text) {
    for (const LetterForm& form : forms) {
        if (!within(text[0], form.first_low, form.first_high))
            continue;
        size_t length = 1;
        if (length < form.length && within(text[1], form.second_low, form.second_high))
            ++length;
        while (length > 1 && length < form.length && within(text[length], 0x80, 0xBF))
            ++length;
        return {length, length == form.length};
    }
    return {1, false};
}

// Nearly every text is ASCII alone: eight bytes at a time.
const char* skip_ascii(const char* text, const char* end) {
    constexpr uint64_t tops = 0x8080808080808080;
    uint64_t word;
    for (; end - text >= static_cast<ptrdiff_t>(sizeof word); text += sizeof word) {
        memcpy(&word, text, sizeof word);
        if (word & tops)
            break;
    }
    while (text < end && !(*text & 0x80))
        ++text;
    return text;
}

} // namespace

bool is_utf8(const char* text, size_t length) {
    const char* end = text + length;
    while ((text = skip_ascii(text, end)) < end) {
        Letter letter = read_letter(text);
        if (!letter.whole)
            return false;
        text += letter.length;
    }
    return true;
}

void repair_utf8(const char* text, char* repaired) {
    static const char replacement[] = "\xEF\xBF\xBD";
    while (*text) {
        Letter letter = read_letter(text);
        size_t length = letter.whole ? letter.length : size_t{REPLACEMENT_SIZE};
        memcpy(repaired, letter.whole ? text : replacement, length);
        text += letter.length;
        repaired += length;
    }
    *repaired = '\0';
}
