// The one-word shapes of the protocol families.
#include "driver/shapes.h"

namespace {

int write_words(uint32_t command, RequestWords words) { return carry_record(command, &words); }

int write_port_words(uint32_t command, RequestWords words) {
    if (int code = refuse(true, words.port))
        return code;
    return write_words(command, words);
}

int read_words(uint32_t command, RequestWords words, uint32_t* value) {
    if (!value)
        return REQUEST_NULL_POINTER;
    if (int code = carry_record(command, &words))
        return code;
    *value = words.value;
    return 0;
}

int read_port_words(uint32_t command, RequestWords words, uint32_t* value) {
    if (int code = refuse(value != nullptr, words.port))
        return code;
    return read_words(command, words, value);
}

} // namespace

int request_set(uint32_t command, uint32_t value) { return write_words(command, {0, 0, 0, value}); }

int request_port_set(uint32_t command, uint32_t port, uint32_t value) {
    return write_port_words(command, {0, port, 0, value});
}

int request_vlan_set(uint32_t command, uint32_t vlan, uint32_t value) {
    return write_words(command, {0, 0, vlan, value});
}

int request_index_set(uint32_t command, uint32_t index, uint32_t value) {
    return write_words(command, {index, 0, 0, value});
}

int request_index_port_set(uint32_t command, uint32_t index, uint32_t port, uint32_t value) {
    return write_port_words(command, {index, port, 0, value});
}

int request_port_item_set(uint32_t command, uint32_t port, uint32_t item, uint32_t value) {
    return write_port_words(command, {0, port, item, value});
}

int request_get(uint32_t command, uint32_t* value) { return read_words(command, {}, value); }

int request_port_get(uint32_t command, uint32_t port, uint32_t* value) {
    return read_port_words(command, {0, port, 0, 0}, value);
}

int request_vlan_get(uint32_t command, uint32_t vlan, uint32_t* value) {
    return read_words(command, {0, 0, vlan, 0}, value);
}

int request_index_get(uint32_t command, uint32_t index, uint32_t* value) {
    return read_words(command, {index, 0, 0, 0}, value);
}

int request_index_port_get(uint32_t command, uint32_t index, uint32_t port, uint32_t* value) {
    return read_port_words(command, {index, port, 0, 0}, value);
}

int request_port_item_get(uint32_t command, uint32_t port, uint32_t item, uint32_t* value) {
    return read_port_words(command, {0, port, item, 0}, value);
}

int request_clear(uint32_t command) { return write_words(command, {}); }

int request_port_clear(uint32_t command, uint32_t port) {
    return write_words(command, {0, port, 0, 0});
}

int request_vlan_clear(uint32_t command, uint32_t vlan) {
    return write_words(command, {0, 0, vlan, 0});
}

int request_index_clear(uint32_t command, uint32_t index) {
    return write_words(command, {index, 0, 0, 0});
}
