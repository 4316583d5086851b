// The switch's text conversions and log, as far as the JSON layer uses them.
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "platform/log.h"
#include "platform/util.h"

int sys_log(int, int, const char*) { return 0; }

int sys_util_str2ul_ret(const char* text, uint32_t* number) {
    if (!*text || std::strspn(text, "0123456789") != std::strlen(text))
        return 1;
    errno = 0;
    unsigned long long value = std::strtoull(text, nullptr, 10);
    if (errno || value > UINT32_MAX)
        return 1;
    *number = static_cast<uint32_t>(value);
    return 0;
}

int sys_util_getnext(const char* text, char delimiter, char* token, int* consumed) {
    const char* end = std::strchr(text, delimiter);
    if (!end || end == text)
        return 77;
    std::memcpy(token, text, static_cast<size_t>(end - text));
    token[end - text] = '\0';
    *consumed = static_cast<int>(end - text) + 1;
    return 0;
}
