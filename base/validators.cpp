// Checks of texts that come from the cloud: addresses part by part, names letter by letter.
#include "base/validators.h"

#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "base/errors.h"
#include "platform/util.h"

namespace {

int validate_part(const char* text) {
    uint32_t number;
    return sys_util_str2ul_ret(text, &number) || number > 255 ? ERROR_REFUSED : 0;
}

// `token` holds as many bytes as `text` with its terminator.
int validate_parts(const char* text, char* token) {
    for (int part = 0; part < 3; ++part) {
        int consumed = 0;
        if (int code = sys_util_getnext(text, '.', token, &consumed))
            return record_error(code);
        if (int code = validate_part(token))
            return code;
        text += consumed;
    }
    return validate_part(text);
}

} // namespace

int ipv4_addr_validate(const char* text) {
    if (!text)
        return ERROR_NO_SECTION;
    // The tokenizer has no bound of its own, and the text may be as long as the sender likes.
    char* token = static_cast<char*>(malloc(strlen(text) + 1));
    if (!token)
        return ERROR_REFUSED;
    int code = validate_parts(text, token);
    free(token);
    return code;
}

namespace {

// Not isalpha(): the rule is ASCII in every locale.
bool is_letter(char letter) {
    return (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z');
}

bool is_name_character(char letter) {
    return is_letter(letter) || (letter >= '0' && letter <= '9') || letter == '-';
}

} // namespace

int systemName_validate(const char* name) {
    if (!name)
        return ERROR_NO_SECTION;
    if (!is_letter(name[0]))
        return ERROR_BAD_VALUE;
    const char* last = name;
    for (const char* next = name; *next; ++next) {
        if (!is_name_character(*next))
            return ERROR_BAD_VALUE;
        last = next;
    }
    return *last == '-' ? ERROR_BAD_VALUE : 0;
}
