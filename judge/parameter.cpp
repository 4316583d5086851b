// The numbers and records that are tried for each kind of argument, and what an output may hold.
#include "judge/parameter.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "platform/system.h"
#include "platform/trunk.h"
#include "platform/vlan.h"

namespace judge {

namespace {

constexpr Number all_up_to = 128; // a longer range is tried in parts
constexpr int most_ports = PORT_BITMAP_WORDS * 32;

std::string range_text(Number low, Number high) {
    return std::to_string(low) + " to " + std::to_string(high);
}

Numbers beside(Number low, Number high) { return {low - 1, high + 1, INT_MAX, INT_MIN}; }

std::string list_text(const Numbers& values) {
    std::string text;
    for (Number value : values)
        text += (text.empty() ? "" : ", ") + std::to_string(value);
    return text;
}

Numbers between(Number low, Number high) {
    Numbers all;
    for (Number number = low; number <= high; ++number)
        all.push_back(number);
    return all;
}

Parameter input(const std::string& name, const std::string& says) {
    Parameter p;
    p.name = name;
    p.says = says;
    return p;
}

Parameter output(const std::string& name, const std::string& says) {
    Parameter p = input(name, says);
    p.direction = Parameter::output;
    return p;
}

Parameter number_output(const std::string& name, const std::string& says) {
    Parameter p = output(name, says);
    p.is_whole = true;
    return p;
}

template <class Unsigned> Number load(const Byte* bytes) {
    Unsigned number;
    std::memcpy(&number, bytes, sizeof number);
    return static_cast<Number>(number);
}

// Values are 0 or more wherever they are not said to be negative, so they are read as unsigned.
Number read_number(const Byte* bytes, std::size_t size) {
    switch (size) {
    case 1:
        return load<std::uint8_t>(bytes);
    case 2:
        return load<std::uint16_t>(bytes);
    case 4:
        return load<std::uint32_t>(bytes);
    default:
        return load<std::uint64_t>(bytes);
    }
}

bool vlan_exists(int vid) { return sal_vlan_adminEntryExist_ret(vid) == 1; }

Numbers vlans_that(bool exist, Numbers found, std::size_t most) {
    for (int vid = VLAN_FIRST; vid <= VLAN_LAST && found.size() < most; ++vid)
        if (vlan_exists(vid) == exist)
            found.push_back(vid);
    return found;
}

Numbers ports_up_to(int count) { return between(0, count - 1); }

Parameter make_port(const std::string& name, int below) {
    return asked(
        name, "a zero-based logical port" + std::string(below ? " below the groups" : ""),
        [below] { return ports_up_to(port_count() - below); },
        [below] {
            return Numbers{-1, port_count() - below, std::max(port_count(), most_ports), INT_MAX};
        });
}

} // namespace

int port_count() { return std::min(std::max(sys_logic_port_num_ret(), 0), most_ports); }

Numbers spread(Number low, Number high) {
    if (high - low <= all_up_to)
        return between(low, high);
    Numbers some = {low, low + 1, high - 1, high};
    for (Number power = 1; power < high; power *= 2)
        for (Number number : {power, power + 1})
            if (number > low && number < high)
                some.push_back(number);
    std::sort(some.begin(), some.end());
    some.erase(std::unique(some.begin(), some.end()), some.end());
    return some;
}

Parameter asked(
    const std::string& name, const std::string& says, std::function<Numbers()> good,
    std::function<Numbers()> bad) {
    Parameter p = input(name, says);
    p.good = std::move(good);
    p.bad = std::move(bad);
    return p;
}

Parameter within(const std::string& name, Number low, Number high) {
    Parameter p = asked(
        name, range_text(low, high), [low, high] { return spread(low, high); },
        [low, high] { return beside(low, high); });
    p.low = low;
    p.high = high;
    return p;
}

Parameter one_of(const std::string& name, const Numbers& values) {
    return asked(
        name, "one of " + list_text(values), [values] { return values; },
        [values] {
            Numbers ends = {values.front() - 1, values.back() + 1, INT_MAX, INT_MIN};
            for (Number number : between(values.front(), values.back()))
                if (std::find(values.begin(), values.end(), number) == values.end())
                    ends.push_back(number);
            return ends;
        });
}

Parameter flag(const std::string& name) { return within(name, 0, 1); }

const Parameter port = make_port("port", 0);
const Parameter physical_port = make_port("port", TRUNK_GROUPS);

Parameter port_that(const std::string& is, bool (*question)(int port)) {
    auto ports = [question](bool answer) {
        Numbers found;
        for (int p = 0; p < port_count(); ++p)
            if (question(p) == answer)
                found.push_back(p);
        return found;
    };
    return asked(
        "port", is, [ports] { return ports(true); },
        [ports] {
            Numbers others = ports(false);
            others.push_back(-1);
            others.push_back(port_count());
            return others;
        });
}

const Parameter vlan = asked(
    "VLAN", "a VLAN that exists", [] { return vlans_that(true, {}, 64); },
    [] {
        return vlans_that(false, {-1, 0, VLAN_LAST + 1, INT_MAX}, 6);
    });

Parameter gives(const Parameter& range) {
    Parameter p = number_output(range.name, range.says);
    p.fault = [range](const Byte* bytes, std::size_t size) -> std::string {
        Number number = read_number(bytes, size);
        Numbers good = range.good();
        if (std::find(good.begin(), good.end(), number) != good.end())
            return "";
        return range.name + " is " + std::to_string(number);
    };
    return p;
}

Parameter gives_number(const std::string& name, Number low, Number high) {
    Parameter p = number_output(name, range_text(low, high));
    p.fault = [name, low, high](const Byte* bytes, std::size_t size) {
        return outside(name, read_number(bytes, size), low, high);
    };
    return p;
}

Parameter gives_flag(const std::string& name) { return gives_number(name, 0, 1); }

Parameter gives_one_of(const std::string& name, const Numbers& values) {
    return gives(one_of(name, values));
}

Parameter gives_any(const std::string& name) { return number_output(name, "a number"); }

Parameter gives_text(const std::string& name, std::size_t size) {
    Parameter p = output(name, "terminated within " + std::to_string(size) + " bytes");
    p.size = size;
    p.is_text = true;
    return p;
}

Parameter gives_bytes(const std::string& name, std::size_t size) {
    Parameter p = number_output(name, std::to_string(size) + " bytes");
    p.size = size;
    return p;
}

Parameter varying(Parameter parameter) {
    parameter.varies = true;
    return parameter;
}

std::string outside(const std::string& name, Number value, Number low, Number high) {
    if (value >= low && value <= high)
        return "";
    return name + " is " + std::to_string(value) + ", not " + range_text(low, high);
}

bool takes_number(const Parameter& input, Number number) {
    if (input.low <= input.high)
        return number >= input.low && number <= input.high;
    const Numbers good = input.good();
    return std::find(good.begin(), good.end(), number) != good.end();
}

std::string unterminated(const std::string& name, const char* field, std::size_t size) {
    return std::memchr(field, 0, size) ? "" : name + " is not terminated";
}

} // namespace judge
