// Text conversions: what comes out is written down here, row by row.
#include "platform/util.h"

#include <cstring>

#include "judge/family.h"
#include "judge/ports.h"

namespace judge {

namespace {

enum { MAC_TEXT_SIZE = 18, IP_TEXT_SIZE = 16 };

// What a call that makes a text is held to: code, size of the buffer, text.
void judge_text(
    int code, const Guarded& text, const std::string& expected, const std::string& says) {
    if (!bench->works(code, says))
        return;
    bench->holds(
        text.overrun() == 0, reason::overrun,
        "the buffer holds " + std::to_string(text.size()) + " bytes",
        std::to_string(text.overrun()) + " bytes outside it were written");
    if (!bench->holds(text.terminated(), reason::unterminated, says, "no NUL in the buffer"))
        return;
    const char* got = reinterpret_cast<const char*>(text.data());
    bench->holds(got == expected, reason::disagrees, show_text(expected.c_str()), show_text(got));
}

// What a call that reads a text is held to: the bytes, or an error that leaves them alone.
void judge_bytes(int code, const Guarded& output, const std::string* expected, const char* says) {
    bench->holds(
        output.overrun() == 0, reason::overrun, says,
        std::to_string(output.overrun()) + " bytes outside it were written");
    if (expected) {
        if (bench->works(code, says))
            bench->holds(
                output.bytes() == *expected, reason::disagrees, says, "another value was written");
        return;
    }
    if (bench->refuses(code, std::string("any other text is an error: ") + says))
        bench->holds(
            output.untouched(), reason::touched, "a failing call leaves its outputs unchanged",
            "the output was written");
}

template <class Value> std::string bytes_of(const Value& value) {
    return {reinterpret_cast<const char*>(&value), sizeof value};
}

// --- Addresses.

void judge_addresses_as_text() {
    const std::uint8_t mac[] = {0x02, 0x1B, 0xAC, 0x3D, 0x4E, 0x0F};
    Guarded text(MAC_TEXT_SIZE);
    int code = ASK(sys_util_mac2Str, mac, text.text());
    if (bench->works(code, "a MAC address as text")) {
        bench->holds(
            text.overrun() == 0, reason::overrun, "the buffer holds at least 18 bytes",
            std::to_string(text.overrun()) + " bytes outside it were written");
        bench->holds(text.terminated(), reason::unterminated, "a text", "no NUL in 18 bytes");
        // Its form is the switch's own; the reverse must understand it.
        if (text.terminated()) {
            Guarded back(MAC_ADDRESS_SIZE);
            std::string expected(reinterpret_cast<const char*>(mac), sizeof mac);
            judge_bytes(
                ASK(sys_util_str2Mac, text.text(), back.data()), back, &expected,
                "the reverse of sys_util_mac2Str");
        }
    }
    struct Row {
        std::uint32_t address;
        const char* text;
    };
    for (Row row :
         {Row{0xC0000201, "192.0.2.1"}, {0, "0.0.0.0"}, {0xFFFFFFFF, "255.255.255.255"}}) {
        Guarded dotted(IP_TEXT_SIZE);
        judge_text(
            ASK(sys_util_ip2Str, row.address, dotted.text()), dotted, row.text, "dotted text");
    }
}

void judge_macs() {
    const std::string mac("\x02\x1B\xAC\x3D\x4E\x0F", 6);
    struct Row {
        const char* text;
        bool any, arp; // good for sys_util_str2Mac, for sn_sys_util_str2Mac
    };
    const Row rows[] = {
        {"02:1B:AC:3D:4E:0F", true, true},      {"02:1b:ac:3d:4e:0f", true, true},
        {"02-1B-AC-3D-4E-0F", true, false},     {"", false, false},
        {"02:1B:AC:3D:4E", false, false},       {"02:1B:AC:3D:4E:0G", false, false},
        {"02:1B:AC:3D:4E:0F:00", false, false}, {"021BAC3D4E0F", false, false},
    };
    for (const Row& row : rows) {
        Guarded any(MAC_ADDRESS_SIZE);
        judge_bytes(
            ASK(sys_util_str2Mac, row.text, any.data()), any, row.any ? &mac : nullptr,
            "a MAC address with \":\" or \"-\" between its bytes");
        Guarded arp(MAC_ADDRESS_SIZE);
        if (row.arp || !row.any) // the ARP table never shows a "-"
            judge_bytes(
                ASK(sn_sys_util_str2Mac, row.text, arp.data()), arp, row.arp ? &mac : nullptr,
                "six bytes in hexadecimal, \":\" between them");
    }
}

void judge_ips() {
    struct Row {
        const char* text;
        bool good;
        std::uint32_t address;
    };
    const Row rows[] = {
        {"192.0.2.1", true, 0xC0000201},
        {"0.0.0.0", true, 0},
        {"255.255.255.255", true, 0xFFFFFFFF},
        {"", false, 0},
        {"192.0.2", false, 0},
        {"192.0.2.256", false, 0},
        {"192.0.2.1.5", false, 0},
        {"switch", false, 0},
        {"192.0.2.x", false, 0},
    };
    for (const Row& row : rows) {
        Guarded address(sizeof row.address);
        std::string expected = bytes_of(row.address);
        judge_bytes(
            ASK(sys_util_str2Ip, row.text, address.as<std::uint32_t>()), address,
            row.good ? &expected : nullptr, "a dotted IPv4 address");
        for (int with_zero : {0, 1}) {
            int valid = row.good && (row.address || with_zero);
            int got = ASK(sal_util_ipv4StrValidate_ret, row.text, with_zero);
            bench->holds(
                got == valid, reason::disagrees, "1 for a dotted IPv4 address",
                std::to_string(got));
        }
    }
}

// --- Texts and numbers.

void judge_names() {
    struct Row {
        const char* text;
        std::uint32_t longest;
        const char* copy; // null for an error
    };
    const Row rows[] = {
        {"port", 32, "port"},    {"", 32, ""},          {"port", 4, "port"},
        {"port one", 4, "port"}, {"a\tb", 32, nullptr}, {"gr\xC3\xBCn", 32, nullptr},
    };
    for (const Row& row : rows) {
        Guarded copy(row.longest + 1);
        int code = ASK(sys_util_namestrcpy, copy.text(), row.text, row.longest);
        if (row.copy)
            judge_text(code, copy, row.copy, "cut to `longest` characters, and terminated");
        else
            judge_bytes(code, copy, nullptr, "printable ASCII");
    }
}

void judge_numbers() {
    struct Row {
        const char* text;
        bool good;
        std::uint32_t number;
    };
    const Row rows[] = {{"0", true, 0},    {"42", true, 42}, {"4294967295", true, UINT32_MAX},
                        {"", false, 0},    {"-1", false, 0}, {"4294967296", false, 0},
                        {"12x", false, 0}, {" 1", false, 0}, {"1 ", false, 0}};
    for (const Row& row : rows) {
        Guarded number(sizeof row.number);
        std::string expected = bytes_of(row.number);
        judge_bytes(
            ASK(sys_util_str2ul_ret, row.text, number.as<std::uint32_t>()), number,
            row.good ? &expected : nullptr, "a decimal text, and nothing else");
    }
}

void judge_tokens() {
    struct Row {
        const char* text;
        const char* token; // null for an error
    };
    for (Row row :
         {Row{"1-5", "1"},
          {"ab-", "ab"},
          {"a-b-c", "a"},
          {"12", nullptr},
          {"-5", nullptr},
          {"", nullptr}}) {
        Guarded token(std::strlen(row.text) + 1);
        int consumed = 12345;
        int code = ASK(sys_util_getnext, row.text, '-', token.text(), &consumed);
        if (!row.token) {
            judge_bytes(code, token, nullptr, "the part before the first delimiter");
            bench->holds(
                code == 0 || consumed == 12345, reason::touched,
                "a failing call leaves its outputs unchanged", "consumed was written");
            continue;
        }
        judge_text(code, token, row.token, "the part before the first delimiter");
        int length = static_cast<int>(std::strlen(row.token)) + 1;
        bench->holds(
            code != 0 || consumed == length, reason::disagrees,
            "that part's length with the delimiter", std::to_string(consumed));
    }
}

// --- Sets of ports.

PortBitmap every_other_port() {
    PortBitmap ports = {};
    for (int p = 0; p < PORT_BITMAP_WORDS * 32; p += 2)
        add(ports, p);
    return ports;
}

PortBitmap set_of(std::initializer_list<int> list) {
    PortBitmap ports = {};
    for (int p : list)
        add(ports, p);
    return ports;
}

void judge_set(const PortBitmap& ports, const char* expected) {
    Guarded text(PORT_NUMBERS_SIZE);
    int code = ASK(sal_util_bitmap2numstr, &ports, text.text());
    if (expected)
        judge_text(code, text, expected, "numbers from 1, a run as first \"-\" last");
    else if (bench->works(code, "a set of ports as text"))
        bench->holds(
            text.overrun() == 0 && text.terminated(), reason::overrun, "the longest list fits",
            std::to_string(text.overrun()) + " bytes outside it were written");
    if (code != 0 || !text.terminated())
        return;
    PortBitmap back = ports_of(95);
    PortBitmap joined = ports;
    add(joined, 95);
    bench->works(ASK(sal_util_numstr2bitmap, text.text(), &back), "text and back");
    bench->holds(
        show(back) == show(joined), reason::disagrees,
        "adds the ports to those of the set: " + show(joined), show(back));
}

void judge_port_lists() {
    judge_set({}, "");
    judge_set(set_of({0}), "1");
    judge_set(set_of({0, 2, 3, 4, 7}), "1,3-5,8");
    judge_set(set_of({30, 31, 32, 33}), "31-34");
    judge_set(set_of({0, 1}), "1-2");
    judge_set({{UINT32_MAX, UINT32_MAX, UINT32_MAX}}, "1-96");
    judge_set(every_other_port(), nullptr);
    for (const char* text : {"0", "97", "x", "3-1", "1-", "1-97", "a,1"}) {
        Guarded ports(sizeof(PortBitmap));
        judge_bytes(
            ASK(sal_util_numstr2bitmap, text, ports.as<PortBitmap>()), ports, nullptr,
            "a list of ports up to 96");
    }
}

void judge_bits() {
    const std::uint32_t a[] = {0x00000100, 0, 0x80000000};
    const std::uint32_t b[] = {0x00000100, 0, 0};
    struct Clear {
        int first, end, clear;
    };
    for (Clear row : {Clear{0, 8, 1}, {0, 9, 0}, {8, 9, 0}, {9, 95, 1}, {9, 96, 0}, {0, 0, 1}}) {
        int got = ASK(sys_util_bitmaskIsClear_ret, a, row.first, row.end);
        bench->holds(
            got == row.clear, reason::disagrees, "1 when the bits up to `end` are all clear",
            std::to_string(got));
    }
    struct Equal {
        int count, equal;
    };
    for (Equal row : {Equal{0, 1}, {32, 1}, {95, 1}, {96, 0}}) {
        int got = ASK(sys_util_bitmaskIsEqual_ret, a, b, row.count);
        bench->holds(
            got == row.equal, reason::disagrees, "1 when the first `count` bits are the same",
            std::to_string(got));
    }
    struct Text {
        const char* text;
        int invalid;
    };
    for (Text row :
         {Text{"", 1},
          {"port", 0},
          {"a b", 1},
          {"a\"b", 1},
          {"a'b", 1},
          {"a\\b", 1},
          {"a?b", 1},
          {"a;b", 1},
          {"a\tb", 1},
          {"\xC3\xBC", 1},
          {"a-b_c.d", 0}}) {
        int got = ASK(sal_util_isInValidStr_ret, row.text);
        bench->holds(
            got == row.invalid, reason::disagrees, "1 for a text that names nothing",
            std::to_string(got));
    }
}

void agreement() {
    judge_addresses_as_text();
    judge_macs();
    judge_ips();
    judge_names();
    judge_numbers();
    judge_tokens();
    judge_port_lists();
    judge_bits();
}

} // namespace

const Family util_family = {"util", nullptr, agreement, nullptr, nullptr};

} // namespace judge
