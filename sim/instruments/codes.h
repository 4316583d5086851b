// The result codes of the simulated platform library.
#pragma once

namespace sim {

enum Code {
    code_ok = 0,
    code_failed = 1,    // no better reason
    code_null = 2,      // a null pointer where a value is needed
    code_bad_value = 3, // out of range
    code_too_long = 4,  // a text longer than its place
    code_bad_text = 5,  // a text that does not have its form
    code_no_port = 30,  // no such logical port
    code_no_vlan = 6,   // no such VLAN
    code_table_full = 7,
    code_exists = 8,
    code_not_found = 9,
    code_busy = 10,      // in use, so not to be taken away
    code_no_power = 11,  // the power budget does not allow it
    code_empty = 12,     // a list without entries
    code_no_image = 46,  // a firmware image without a valid header
    code_bad_image = 47, // a firmware image that is damaged
};

} // namespace sim
