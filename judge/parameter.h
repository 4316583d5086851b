// What the contract says of one argument of a call: which numbers may go in and which must be
// refused; how large an output is, and what may stand in it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "judge/guarded.h"

namespace judge {

using Number = std::int64_t;
using Numbers = std::vector<Number>;

struct Parameter {
    enum Direction { input, output };

    Direction direction = input;
    std::string name;
    std::string says; // the range in words

    // An input. The good numbers may depend on the switch, so they are asked for when needed.
    std::function<Numbers()> good;
    std::function<Numbers()> bad;
    // Of a fixed range its ends, for `good` is but a part of a long one.
    Number low = 0, high = -1;

    // An output.
    std::size_t size = 0;  // bytes; of a number or record that of its type
    bool is_text = false;  // NUL-terminated within `size`
    bool is_whole = false; // every byte of it is written, as of a number
    bool varies = false;   // a measurement: two calls may differ
    bool may_stay = false; // a successful call may leave it as it was
    std::size_t given = 0; // bytes at its start that go in
    // What is wrong with what came; empty for nothing.
    std::function<std::string(const Byte*, std::size_t)> fault;
};

using Parameters = std::vector<Parameter>;

// --- Inputs.

// A number of a fixed range; what lies beside it is refused.
Parameter within(const std::string& name, Number low, Number high);
// One of a few numbers; the numbers between and beside them are refused.
Parameter one_of(const std::string& name, const Numbers& values);
Parameter flag(const std::string& name);
// Zero-based logical ports: all of them; those below the aggregation groups; those that a question
// answers with yes.
extern const Parameter port;
extern const Parameter physical_port;
Parameter port_that(const std::string& is, bool (*question)(int port));
// A VLAN that exists.
extern const Parameter vlan;
// Numbers that are asked for.
Parameter asked(
    const std::string& name, const std::string& says, std::function<Numbers()> good,
    std::function<Numbers()> bad);

// --- Outputs. A number has the size of what the function's pointer points at.

Parameter gives(const Parameter& range); // a number of that range
Parameter gives_number(const std::string& name, Number low, Number high);
Parameter gives_flag(const std::string& name);
Parameter gives_one_of(const std::string& name, const Numbers& values);
Parameter gives_any(const std::string& name);
Parameter gives_text(const std::string& name, std::size_t size);
Parameter gives_bytes(const std::string& name, std::size_t size);
Parameter varying(Parameter parameter);

// A record, with a judge of its content.
template <class Record>
Parameter gives_record(const std::string& name, std::string (*fault)(const Record&)) {
    Parameter p;
    p.direction = Parameter::output;
    p.name = name;
    p.size = sizeof(Record);
    p.fault = [fault](const Byte* bytes, std::size_t) {
        return fault(*reinterpret_cast<const Record*>(bytes));
    };
    return p;
}

// --- What judges of records use.

// "", or what is wrong with a member.
std::string outside(const std::string& name, Number value, Number low, Number high);
// "", or "x is not terminated" for a text in a field of a record.
std::string unterminated(const std::string& name, const char* field, std::size_t size);

// Whether an input takes a number.
bool takes_number(const Parameter& input, Number number);

// How the numbers of a range are tried: all of a short one, ends and a spread of a long one.
Numbers spread(Number low, Number high);

int port_count(); // what sys_logic_port_num_ret answers, kept within what a port set holds

} // namespace judge
