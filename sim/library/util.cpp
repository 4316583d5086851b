// Platform library: text conversions.
#include "platform/util.h"

#include <arpa/inet.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <sstream>

#include "platform/types.h"
#include "sim/instruments/number_list.h"
#include "sim/library/call.h"

using namespace sim;

namespace {

// "0a-1B-..." or "0a:1B:...", one separator throughout.
bool read_mac(const std::string& text, uint8_t* mac) {
    if (text.size() != 17 || (text[2] != ':' && text[2] != '-'))
        return false;
    for (std::size_t i = 0; i < MAC_ADDRESS_SIZE; ++i) {
        const char* byte = text.data() + 3 * i;
        auto [at, error] = std::from_chars(byte, byte + 2, mac[i], 16);
        if (error != std::errc{} || at != byte + 2 || (i < 5 && *at != text[2]))
            return false;
    }
    return true;
}

} // namespace

int sal_util_bitmap2numstr(const PortBitmap* ports, char* text) {
    return call(
        "sal_util_bitmap2numstr",
        [&](Switch&) {
            copy_text(text, PORT_NUMBERS_SIZE, write_numbers(ports->words, 1));
            return code_ok;
        },
        *ports);
}

int sal_util_numstr2bitmap(const char* text, PortBitmap* ports) {
    return call(
        "sal_util_numstr2bitmap",
        [&](Switch&) -> int {
            if (!text)
                return code_null;
            PortBitmap read = *ports;
            std::istringstream items(text);
            for (std::string item; std::getline(items, item, ',');)
                if (!item.empty() && !read_numbers(item, 1, read.words))
                    return code_bad_text;
            *ports = read;
            return code_ok;
        },
        text);
}

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

int sys_util_str2Mac(const char* text, uint8_t* mac) {
    return call(
        "sys_util_str2Mac",
        [&](Switch&) -> int {
            uint8_t parsed[MAC_ADDRESS_SIZE];
            if (!text || !read_mac(text, parsed))
                return code_bad_text;
            std::memcpy(mac, parsed, sizeof parsed);
            return code_ok;
        },
        text);
}

int sys_util_str2Ip(const char* text, uint32_t* address) {
    return call(
        "sys_util_str2Ip",
        [&](Switch&) -> int {
            in_addr network;
            if (!text || inet_pton(AF_INET, text, &network) != 1)
                return code_bad_text;
            *address = ntohl(network.s_addr);
            return code_ok;
        },
        text);
}

int sn_sys_util_str2Mac(const char* text, uint8_t* mac) {
    return call(
        "sn_sys_util_str2Mac",
        [&](Switch&) -> int {
            uint8_t parsed[MAC_ADDRESS_SIZE];
            if (!text || !read_mac(text, parsed) || text[2] != ':')
                return code_bad_text;
            std::memcpy(mac, parsed, sizeof parsed);
            return code_ok;
        },
        text);
}

int sal_util_ipv4StrValidate_ret(const char* text, int with_zero) {
    return value(
        "sal_util_ipv4StrValidate_ret",
        [&](Switch&) {
            in_addr network;
            return text && inet_pton(AF_INET, text, &network) == 1 &&
                           (with_zero || network.s_addr != 0)
                       ? 1
                       : 0;
        },
        text, with_zero);
}

int sys_util_namestrcpy(char* copy, const char* text, uint32_t longest) {
    return call(
        "sys_util_namestrcpy",
        [&](Switch&) -> int {
            if (!text)
                return code_null;
            std::string name(text);
            if (std::ranges::any_of(name, [](char c) { return c < ' ' || c > '~'; }))
                return code_bad_text;
            copy_text(copy, longest + 1, name);
            return code_ok;
        },
        text, longest);
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

int sal_util_isInValidStr_ret(const char* text) {
    return value(
        "sal_util_isInValidStr_ret",
        [&](Switch&) {
            std::string_view all = text;
            bool odd = std::ranges::any_of(all, [](char c) {
                return c <= ' ' || c > '~' ||
                       std::string_view("\"'\\?;").find(c) != std::string_view::npos;
            });
            return all.empty() || odd ? 1 : 0;
        },
        text);
}
