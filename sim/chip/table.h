// A table of the chip: entries that are told apart by some of their members, in the order in which
// they came.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "sim/instruments/codes.h"

namespace sim {

// `key` takes an entry and returns what tells it from others.
template <class Entry, auto key> class ChipTable {
  public:
    explicit ChipTable(std::size_t room) : room_(room) {}

    // Adds an entry, or replaces the one that it is not told apart from.
    int put(const Entry& entry) {
        if (Entry* same = find(entry)) {
            *same = entry;
            return code_ok;
        }
        if (entries_.size() >= room_)
            return code_table_full;
        entries_.push_back(entry);
        return code_ok;
    }

    int remove(const Entry& entry) {
        return remove_if([&](const Entry& other) { return key(other) == key(entry); })
                   ? code_ok
                   : code_not_found;
    }

    // Returns how many there were.
    template <class Condition> std::size_t remove_if(Condition condition) {
        return std::erase_if(entries_, condition);
    }

    // Null when there is none, or none at that place.
    Entry* find(const Entry& entry) {
        auto same = std::ranges::find_if(
            entries_, [&](const Entry& other) { return key(other) == key(entry); });
        return same == entries_.end() ? nullptr : &*same;
    }
    Entry* at(std::size_t place) { return place < entries_.size() ? &entries_[place] : nullptr; }

    void clear() { entries_.clear(); }
    std::size_t size() const { return entries_.size(); }
    std::size_t room() const { return room_; }
    const std::vector<Entry>& entries() const { return entries_; }

    template <class Condition> std::uint32_t count_if(Condition condition) const {
        return static_cast<std::uint32_t>(std::ranges::count_if(entries_, condition));
    }

  private:
    std::size_t room_;
    std::vector<Entry> entries_;
};

// Copies what a lookup found to where it was asked for.
template <class Entry> int hand_out(const Entry* found, Entry& entry) {
    if (!found)
        return code_not_found;
    entry = *found;
    return code_ok;
}

} // namespace sim
