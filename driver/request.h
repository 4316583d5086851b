// The request frame: one operation of the switch driver is one ioctl on its device node. Here are
// the two kinds of record and the shapes that the families share; a member of a family is a line.
//
// Records begin with four words. The protocol families (names without rsd_) use them by meaning:
// index, port, VLAN or item, value. The chip families (rsd_) use the first words for their
// arguments, in the order of the arguments, results included. What does not fit a word (entries,
// counters, masks, texts) stands behind the four words; the access lists, the counters and the
// cable test have records of their own, defined with their group.
//
// Every shape answers 498 for a null pointer and 30 for a port that the switch does not have,
// before the device is opened; a clear is the exception: it takes any port number that the driver
// takes. Results are written only when the driver answered 0.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <type_traits>

#include "platform/system.h"

// The codes that this layer adds to the driver's own.
enum {
    REQUEST_BAD_VALUE = 19,
    REQUEST_BAD_PORT = 30,
    REQUEST_NULL_POINTER = 498,
    REQUEST_NO_DEVICE = 501,
};

extern "C" {
// Carries `record` to the driver under `command` (group base plus index) and back. The device is
// opened for this request alone. Returns the driver's result, 0 for success, or 501 when the device
// cannot be opened; the driver's other codes are passed on unchanged.
int glue_util_ioctl(uint32_t command, void* record);
}

inline bool is_logical_port(uint32_t port) {
    return port < static_cast<uint32_t>(sys_logic_port_num_ret());
}

// ---- Protocol families: words by meaning ----

struct RequestWords {
    uint32_t index; // unit, table index or first argument
    uint32_t port;
    uint32_t vlan; // or another second index: a traffic type, a TLV, a queue
    uint32_t value;
};

// One word written: switch-wide, for a port, for a VLAN, for a table index, for a port within a
// table index, for an item of a port.
int request_set(uint32_t command, uint32_t value);
int request_port_set(uint32_t command, uint32_t port, uint32_t value);
int request_vlan_set(uint32_t command, uint32_t vlan, uint32_t value);
int request_index_set(uint32_t command, uint32_t index, uint32_t value);
int request_index_port_set(uint32_t command, uint32_t index, uint32_t port, uint32_t value);
int request_port_item_set(uint32_t command, uint32_t port, uint32_t item, uint32_t value);

// One word read, with the same addressing.
int request_get(uint32_t command, uint32_t* value);
int request_port_get(uint32_t command, uint32_t port, uint32_t* value);
int request_vlan_get(uint32_t command, uint32_t vlan, uint32_t* value);
int request_index_get(uint32_t command, uint32_t index, uint32_t* value);
int request_index_port_get(uint32_t command, uint32_t index, uint32_t port, uint32_t* value);
int request_port_item_get(uint32_t command, uint32_t port, uint32_t item, uint32_t* value);

// Clears and other actions, which carry no value.
int request_clear(uint32_t command);
int request_port_clear(uint32_t command, uint32_t port);
int request_vlan_clear(uint32_t command, uint32_t vlan);
int request_index_clear(uint32_t command, uint32_t index);

// ---- Records that end in an entry ----

template <class Words, class Entry> struct EntryRecord {
    static_assert(std::has_unique_object_representations_v<Entry>, "a record has no gaps");
    Words words;
    Entry entry;
};

// The entry is written.
template <class Words, class Entry>
int entry_write(uint32_t command, const Words& words, const Entry* entry) {
    if (!entry)
        return REQUEST_NULL_POINTER;
    EntryRecord<Words, Entry> record = {words, *entry};
    return glue_util_ioctl(command, &record);
}

// Sends `record` and, on success, hands its entry out.
template <class Words, class Entry>
int entry_fetch(uint32_t command, EntryRecord<Words, Entry> record, Entry* entry) {
    if (int code = glue_util_ioctl(command, &record))
        return code;
    *entry = record.entry;
    return 0;
}

// The entry is read; the words alone say which.
template <class Words, class Entry>
int entry_read(uint32_t command, const Words& words, Entry* entry) {
    return entry ? entry_fetch<Words, Entry>(command, {words, {}}, entry) : REQUEST_NULL_POINTER;
}

// The entry goes to the driver and comes back: its own members say which entry is meant.
template <class Words, class Entry>
int entry_exchange(uint32_t command, const Words& words, Entry* entry) {
    return entry ? entry_fetch<Words, Entry>(command, {words, *entry}, entry)
                 : REQUEST_NULL_POINTER;
}

template <class Entry> int request_entry_set(uint32_t command, const Entry* entry) {
    return entry_write(command, RequestWords{}, entry);
}

template <class Entry> int request_entry_get(uint32_t command, Entry* entry) {
    return entry_read(command, RequestWords{}, entry);
}

template <class Entry> int request_entry_find(uint32_t command, Entry* entry) {
    return entry_exchange(command, RequestWords{}, entry);
}

template <class Entry>
int request_index_entry_set(uint32_t command, uint32_t index, const Entry* entry) {
    return entry_write(command, RequestWords{index, 0, 0, 0}, entry);
}

template <class Entry> int request_index_entry_get(uint32_t command, uint32_t index, Entry* entry) {
    return entry_read(command, RequestWords{index, 0, 0, 0}, entry);
}

template <class Entry>
int request_vlan_entry_set(uint32_t command, uint32_t vlan, const Entry* entry) {
    return entry_write(command, RequestWords{0, 0, vlan, 0}, entry);
}

template <class Entry> int request_vlan_entry_get(uint32_t command, uint32_t vlan, Entry* entry) {
    return entry_read(command, RequestWords{0, 0, vlan, 0}, entry);
}

template <class Entry>
int request_port_entry_set(uint32_t command, uint32_t port, const Entry* entry) {
    if (entry && !is_logical_port(port))
        return REQUEST_BAD_PORT;
    return entry_write(command, RequestWords{0, port, 0, 0}, entry);
}

// Entry `index` of a port's table, or of a table's port; index 0 where a port has one entry.
template <class Entry>
int request_index_port_entry_get(uint32_t command, uint32_t index, uint32_t port, Entry* entry) {
    if (entry && !is_logical_port(port))
        return REQUEST_BAD_PORT;
    return entry_read(command, RequestWords{index, port, 0, 0}, entry);
}

template <class Entry> int request_port_entry_get(uint32_t command, uint32_t port, Entry* entry) {
    return request_index_port_entry_get(command, 0, port, entry);
}

// A text of at most `size` bytes with its terminator. A longer one is cut: the record has no more.
template <size_t size> struct TextEntry { char text[size]; };

template <size_t size> TextEntry<size> text_entry(const char* text) {
    TextEntry<size> entry = {};
    memcpy(entry.text, text, strnlen(text, size - 1));
    return entry;
}

template <size_t size, class Words>
int text_write(uint32_t command, const Words& words, const char* text) {
    if (!text)
        return REQUEST_NULL_POINTER;
    const TextEntry<size> entry = text_entry<size>(text);
    return entry_write(command, words, &entry);
}

// `text` has room for `size` bytes.
template <size_t size, class Words>
int text_read(uint32_t command, const Words& words, char* text) {
    if (!text)
        return REQUEST_NULL_POINTER;
    TextEntry<size> entry;
    if (int code = entry_read(command, words, &entry))
        return code;
    entry.text[size - 1] = '\0';
    memcpy(text, entry.text, size);
    return 0;
}

template <size_t size> int request_text_set(uint32_t command, const char* text) {
    return text_write<size>(command, RequestWords{}, text);
}

template <size_t size> int request_text_get(uint32_t command, char* text) {
    return text_read<size>(command, RequestWords{}, text);
}

// ---- Chip families: arguments in order ----

struct ChipWords {
    uint32_t word[4];
};

// An argument is a word to send or a pointer to the word that comes back in its place.
inline bool chip_argument_ok(uint32_t) { return true; }
inline bool chip_argument_ok(const void* pointer) { return pointer != nullptr; }
inline uint32_t chip_argument_sent(uint32_t value) { return value; }
inline uint32_t chip_argument_sent(const uint32_t*) { return 0; }
inline void chip_argument_store(uint32_t, uint32_t) {}
inline void chip_argument_store(uint32_t* result, uint32_t word) { *result = word; }

template <class... Arguments> int chip_request(uint32_t command, Arguments... arguments) {
    static_assert(sizeof...(Arguments) <= 4, "the record has four words");
    if (!(chip_argument_ok(arguments) && ...))
        return REQUEST_NULL_POINTER;
    ChipWords words = {{chip_argument_sent(arguments)...}};
    if (int code = glue_util_ioctl(command, &words))
        return code;
    [[maybe_unused]] const uint32_t* word = words.word;
    (chip_argument_store(arguments, *word++), ...);
    return 0;
}

// The same for operations whose first argument is a logical port.
template <class... Arguments>
int chip_port_request(uint32_t command, uint32_t port, Arguments... arguments) {
    if ((chip_argument_ok(arguments) && ...) && !is_logical_port(port))
        return REQUEST_BAD_PORT;
    return chip_request(command, port, arguments...);
}

// An entry written, read, or looked up by its own members; `keys` are the words before it.
template <class Entry, class... Keys>
int chip_entry_set(uint32_t command, const Entry* entry, Keys... keys) {
    return entry_write(command, ChipWords{{keys...}}, entry);
}

template <class Entry, class... Keys>
int chip_entry_get(uint32_t command, Entry* entry, Keys... keys) {
    return entry_read(command, ChipWords{{keys...}}, entry);
}

template <class Entry, class... Keys>
int chip_entry_find(uint32_t command, Entry* entry, Keys... keys) {
    return entry_exchange(command, ChipWords{{keys...}}, entry);
}

template <class Entry, class... Keys>
int chip_port_entry_set(uint32_t command, const Entry* entry, uint32_t port, Keys... keys) {
    if (entry && !is_logical_port(port))
        return REQUEST_BAD_PORT;
    return chip_entry_set(command, entry, port, keys...);
}

template <class Entry, class... Keys>
int chip_port_entry_get(uint32_t command, Entry* entry, uint32_t port, Keys... keys) {
    if (entry && !is_logical_port(port))
        return REQUEST_BAD_PORT;
    return chip_entry_get(command, entry, port, keys...);
}

// A text written or read; `keys` are the words before it.
template <size_t size, class... Keys>
int chip_text_set(uint32_t command, const char* text, Keys... keys) {
    return text_write<size>(command, ChipWords{{keys...}}, text);
}

template <size_t size, class... Keys>
int chip_port_text_set(uint32_t command, const char* text, uint32_t port, Keys... keys) {
    if (text && !is_logical_port(port))
        return REQUEST_BAD_PORT;
    return chip_text_set<size>(command, text, port, keys...);
}

template <size_t size, class... Keys>
int chip_text_get(uint32_t command, char* text, Keys... keys) {
    return text_read<size>(command, ChipWords{{keys...}}, text);
}
