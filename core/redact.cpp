// The account's values are starred out in a copy of the text, without parsing the document.
#include "core/redact.h"

#include <stdlib.h>
#include <string.h>
#include <strings.h>

namespace {

// As the parser does, to which every control character is a blank.
char* skip_blanks(char* at) {
    while (*at && static_cast<unsigned char>(*at) <= ' ')
        ++at;
    return at;
}

// The closing quote of the string that opens at `quote`, or the end of a text that lacks it.
char* end_of_string(char* quote) {
    char* at = quote + 1;
    while (*at && *at != '"')
        at += *at == '\\' && at[1] ? 2 : 1;
    return at;
}

// Names match without regard to case, as they do when the document is read.
bool is_confidential(const char* name, size_t length) {
    if (memchr(name, '\\', length))
        return true;
    static const char* const names[] = {"key", "secret"};
    for (const char* confidential : names) {
        if (strlen(confidential) == length && strncasecmp(name, confidential, length) == 0)
            return true;
    }
    return false;
}

// Stars out the text value that follows the name before `at`, if one does. Returns where to go on.
char* hide_value(char* at) {
    char* colon = skip_blanks(at);
    if (*colon != ':')
        return at;
    char* value = skip_blanks(colon + 1);
    if (*value != '"')
        return value;
    char* end = end_of_string(value);
    memset(value + 1, '*', static_cast<size_t>(end - value - 1));
    return *end ? end + 1 : end;
}

} // namespace

char* redact_account(const char* document) {
    size_t size = strlen(document) + 1;
    char* copy = static_cast<char*>(malloc(size));
    if (!copy)
        return nullptr;
    memcpy(copy, document, size);
    for (char* at = copy; (at = strchr(at, '"'));) {
        char* end = end_of_string(at);
        bool confidential = is_confidential(at + 1, static_cast<size_t>(end - at - 1));
        at = *end ? end + 1 : end;
        if (confidential)
            at = hide_value(at);
    }
    return copy;
}
