// The shapes of requests that the families share; an operation of a family is a line that names its
// shape, its command and its arguments.
//
// Every shape answers 498 for a null pointer and 30 for a port that the switch does not have,
// before the device is opened; a clear is the exception: it takes any port number that the driver
// takes. Every byte of a record is defined when it goes to the driver. Results are written only
// when the driver answered 0.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include "driver/request.h"
#include "platform/system.h"

#ifdef __cplusplus

#include <type_traits>

#pragma GCC visibility push(hidden) // of the operations, not of the platform library

inline bool is_logical_port(uint32_t port) {
    return port < static_cast<uint32_t>(sys_logic_port_num_ret());
}

// The code for a request that lacks a pointer or names a port that the switch does not have.
inline int refuse(bool has_pointers, uint32_t port) {
    if (!has_pointers)
        return REQUEST_NULL_POINTER;
    return is_logical_port(port) ? 0 : REQUEST_BAD_PORT;
}

// --- Protocol families: words by meaning.

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

// --- Records that end in an entry.

template <class Words, class Entry> struct EntryRecord {
    Words words;
    Entry entry;
};

// The one way of every record to the driver.
template <class Record> int carry_record(uint32_t command, Record* record) {
    static_assert(std::has_unique_object_representations_v<Record>, "a record has no gaps");
    return glue_util_ioctl(command, record);
}

// The entry is written.
template <class Words, class Entry>
int write_entry(uint32_t command, const Words& words, const Entry* entry) {
    if (!entry)
        return REQUEST_NULL_POINTER;
    EntryRecord<Words, Entry> record = {words, *entry};
    return carry_record(command, &record);
}

// Sends `record` and, on success, hands its entry out.
template <class Words, class Entry>
int fetch_entry(uint32_t command, EntryRecord<Words, Entry>* record, Entry* entry) {
    if (int code = carry_record(command, record))
        return code;
    *entry = record->entry;
    return 0;
}

// The entry is read; the words alone say which.
template <class Words, class Entry>
int read_entry(uint32_t command, const Words& words, Entry* entry) {
    if (!entry)
        return REQUEST_NULL_POINTER;
    EntryRecord<Words, Entry> record = {words, {}};
    return fetch_entry(command, &record, entry);
}

// The entry goes to the driver and comes back: its own members say which entry is meant.
template <class Words, class Entry>
int exchange_entry(uint32_t command, const Words& words, Entry* entry) {
    if (!entry)
        return REQUEST_NULL_POINTER;
    EntryRecord<Words, Entry> record = {words, *entry};
    return fetch_entry(command, &record, entry);
}

template <class Entry> int request_entry_set(uint32_t command, const Entry* entry) {
    return write_entry(command, RequestWords{}, entry);
}

template <class Entry> int request_entry_get(uint32_t command, Entry* entry) {
    return read_entry(command, RequestWords{}, entry);
}

template <class Entry> int request_entry_find(uint32_t command, Entry* entry) {
    return exchange_entry(command, RequestWords{}, entry);
}

template <class Entry>
int request_index_entry_set(uint32_t command, uint32_t index, const Entry* entry) {
    return write_entry(command, RequestWords{index, 0, 0, 0}, entry);
}

template <class Entry> int request_index_entry_get(uint32_t command, uint32_t index, Entry* entry) {
    return read_entry(command, RequestWords{index, 0, 0, 0}, entry);
}

template <class Entry>
int request_vlan_entry_set(uint32_t command, uint32_t vlan, const Entry* entry) {
    return write_entry(command, RequestWords{0, 0, vlan, 0}, entry);
}

template <class Entry> int request_vlan_entry_get(uint32_t command, uint32_t vlan, Entry* entry) {
    return read_entry(command, RequestWords{0, 0, vlan, 0}, entry);
}

template <class Entry>
int request_port_entry_set(uint32_t command, uint32_t port, const Entry* entry) {
    if (int code = refuse(entry != nullptr, port))
        return code;
    return write_entry(command, RequestWords{0, port, 0, 0}, entry);
}

// Entry `index` of a port's table, or of a table's port; index 0 where a port has one entry.
template <class Entry>
int request_index_port_entry_get(uint32_t command, uint32_t index, uint32_t port, Entry* entry) {
    if (int code = refuse(entry != nullptr, port))
        return code;
    return read_entry(command, RequestWords{index, port, 0, 0}, entry);
}

template <class Entry> int request_port_entry_get(uint32_t command, uint32_t port, Entry* entry) {
    return request_index_port_entry_get(command, 0, port, entry);
}

// --- Texts.

// Room for a text of at most `size` bytes with its terminator, in whole words.
template <size_t size> struct TextEntry { char text[(size + 3) / 4 * 4]; };

// Puts `text` into a zeroed `field`. A longer one than `size` bytes hold with their terminator is
// cut: the record has no more.
inline void put_text(char* field, size_t size, const char* text) {
    memcpy(field, text, strnlen(text, size - 1));
}

// Hands out a text that the driver may have left without its terminator.
inline void take_text(char* text, size_t size, const char* field) {
    memcpy(text, field, size - 1);
    text[size - 1] = '\0';
}

template <size_t size, class Words>
int write_text(uint32_t command, const Words& words, const char* text) {
    if (!text)
        return REQUEST_NULL_POINTER;
    TextEntry<size> entry = {};
    put_text(entry.text, size, text);
    return write_entry(command, words, &entry);
}

// `text` has room for `size` bytes.
template <size_t size, class Words>
int read_text(uint32_t command, const Words& words, char* text) {
    if (!text)
        return REQUEST_NULL_POINTER;
    TextEntry<size> entry;
    if (int code = read_entry(command, words, &entry))
        return code;
    take_text(text, size, entry.text);
    return 0;
}

template <size_t size> int request_text_set(uint32_t command, const char* text) {
    return write_text<size>(command, RequestWords{}, text);
}

template <size_t size> int request_text_get(uint32_t command, char* text) {
    return read_text<size>(command, RequestWords{}, text);
}

// --- Chip families: arguments in order.

// An argument is a word to send, or a pointer to take the word that comes back in its place.
inline bool is_given(uint32_t) { return true; }
inline bool is_given(const uint32_t* result) { return result != nullptr; }
inline uint32_t word_to_send(uint32_t value) { return value; }
inline uint32_t word_to_send(const uint32_t*) { return 0; }
inline void take_word(uint32_t, uint32_t) {}
inline void take_word(uint32_t* result, uint32_t word) { *result = word; }

template <class... Arguments> int request_chip(uint32_t command, Arguments... arguments) {
    static_assert(sizeof...(Arguments) <= 4, "the record has four words");
    if (!(is_given(arguments) && ...))
        return REQUEST_NULL_POINTER;
    ChipWords words = {{word_to_send(arguments)...}};
    if (int code = carry_record(command, &words))
        return code;
    [[maybe_unused]] const uint32_t* word = words.word;
    (take_word(arguments, *word++), ...);
    return 0;
}

// The same for operations whose first argument is a logical port.
template <class... Arguments>
int request_chip_port(uint32_t command, uint32_t port, Arguments... arguments) {
    if (int code = refuse((is_given(arguments) && ...), port))
        return code;
    return request_chip(command, port, arguments...);
}

// An entry written, read, or looked up by its own members; `keys` are the words before it.
template <class Entry, class... Keys>
int request_chip_entry_set(uint32_t command, const Entry* entry, Keys... keys) {
    return write_entry(command, ChipWords{{keys...}}, entry);
}

template <class Entry, class... Keys>
int request_chip_entry_get(uint32_t command, Entry* entry, Keys... keys) {
    return read_entry(command, ChipWords{{keys...}}, entry);
}

template <class Entry> int request_chip_entry_find(uint32_t command, Entry* entry) {
    return exchange_entry(command, ChipWords{}, entry);
}

template <class Entry, class... Keys>
int request_chip_port_entry_set(uint32_t command, const Entry* entry, uint32_t port, Keys... keys) {
    if (int code = refuse(entry != nullptr, port))
        return code;
    return request_chip_entry_set(command, entry, port, keys...);
}

template <class Entry, class... Keys>
int request_chip_port_entry_get(uint32_t command, Entry* entry, uint32_t port, Keys... keys) {
    if (int code = refuse(entry != nullptr, port))
        return code;
    return request_chip_entry_get(command, entry, port, keys...);
}

// A text written or read; `keys` are the words before it.
template <size_t size, class... Keys>
int request_chip_text_set(uint32_t command, const char* text, Keys... keys) {
    return write_text<size>(command, ChipWords{{keys...}}, text);
}

template <size_t size>
int request_chip_port_text_set(uint32_t command, const char* text, uint32_t port) {
    if (int code = refuse(text != nullptr, port))
        return code;
    return request_chip_text_set<size>(command, text, port);
}

template <size_t size, class... Keys>
int request_chip_text_get(uint32_t command, char* text, Keys... keys) {
    return read_text<size>(command, ChipWords{{keys...}}, text);
}

#pragma GCC visibility pop

#endif
