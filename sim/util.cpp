// Platform library: text conversions.
#include "platform/util.h"

#include <arpa/inet.h>

#include <charconv>
#include <cstring>

#include "sim/call.h"

using namespace sim;

int sys_util_mac2Str(const uint8_t* mac, char* text) {
    return call(
        "sys_util_mac2Str",
        [&](Switch&) {
            copy_text(text, 18, show_mac(mac));
            return code_ok;
        },
        show_mac(mac));
}

int sys_util_ip2Str(uint32_t address, char* text) {
    return call(
        "sys_util_ip2Str",
        [&](Switch&) {
            in_addr network{htonl(address)};
            return inet_ntop(AF_INET, &network, text, 16) ? code_ok : code_failed;
        },
        address);
}

int sys_util_str2ul_ret(const char* text, uint32_t* number) {
    return call(
        "sys_util_str2ul_ret",
        [&](Switch&) -> int {
            uint32_t parsed = 0;
            const char* end = text + std::strlen(text);
            auto [at, error] = std::from_chars(text, end, parsed);
            if (error != std::errc{} || at != end)
                return code_bad_text;
            *number = parsed;
            return code_ok;
        },
        text);
}

int sys_util_getnext(const char* text, char delimiter, char* token, int* consumed) {
    return call(
        "sys_util_getnext",
        [&](Switch&) -> int {
            const char* at = std::strchr(text, delimiter);
            if (!at || at == text)
                return code_bad_text;
            std::memcpy(token, text, static_cast<std::size_t>(at - text));
            token[at - text] = '\0';
            *consumed = static_cast<int>(at - text) + 1;
            return code_ok;
        },
        text, static_cast<int>(delimiter));
}

int sys_util_bitmaskIsClear_ret(const uint32_t* words, int first, int end) {
    return value(
        "sys_util_bitmaskIsClear_ret",
        [&](Switch&) {
            for (int bit = first; bit < end; ++bit)
                if (words[bit / 32] >> (bit % 32) & 1)
                    return 0;
            return 1;
        },
        first, end);
}

int sys_util_bitmaskIsEqual_ret(const uint32_t* a, const uint32_t* b, int count) {
    return value(
        "sys_util_bitmaskIsEqual_ret",
        [&](Switch&) {
            for (int bit = 0; bit < count; ++bit)
                if ((a[bit / 32] ^ b[bit / 32]) >> (bit % 32) & 1)
                    return 0;
            return 1;
        },
        count);
}
