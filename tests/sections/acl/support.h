// Access lists on a board, for the tests of the section's parts.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/acl.h"
#include "sim/instruments/codes.h"
#include "tests/support/on_board.h"

// Gives the chip the lists that a test has put on the board, as the firmware would have.
void copy_lists_to_chip(sim::Board& on);

class OnBoardWithLists : public OnBoard {
  protected:
    // A list with `entries` entries that match anything and permit, with sequence numbers 1, 2, ...
    static void
    put_list(sim::Board& board, const std::string& name, std::uint32_t type, int entries = 1);
    void put_list(const std::string& name, std::uint32_t type, int entries = 1) {
        put_list(board, name, type, entries);
    }
    static void bind(sim::Board& board, std::uint32_t type, const std::string& name, int port) {
        board.device.acl.bound[static_cast<std::size_t>(port)][type] = name;
    }
    void bind(std::uint32_t type, const std::string& name, int port) {
        bind(board, type, name, port);
    }
    std::string bound(std::uint32_t type, int port) const {
        return device.acl.bound[static_cast<std::size_t>(port)][type];
    }
    // The entries of a list as the trace shows them.
    Lines entries(const std::string& list);

    // Applies an "acl" object.
    int set(const std::string& acl);
    // The trace without calls that only read.
    Lines writes() const;
};

// The same with the entries of one kind, those of the list "A".
class OnBoardWithEntries : public OnBoardWithLists {
  protected:
    OnBoardWithEntries(std::uint32_t type, int (*setter)(const cJSON*))
        : type_(type), setter_(setter) {}

    // Applies an array of items.
    int apply_all(const std::string& items);
    // Applies one item to the list "A": `members` are all that it has besides.
    int apply(const std::string& members);
    int create(const std::string& members, int sequence = 10);
    int modify(const std::string& members, int sequence = 10);
    // The list with one entry, made from `members`.
    void start_with(const std::string& members);
    // Its last entry as the trace shows it.
    std::string entry();

    std::uint32_t type_;
    int (*setter_)(const cJSON*);
};

// What comes of the members of an item.
struct EntryCase {
    const char* members;
    const char* entry; // null: refused with 19
};

// What has to come of a run when one of its calls fails.
struct Outcome {
    int result;
    Codes errors;
    bool ends; // no other call is made
};

// Compares each run with the outcome of its call: under the call's name, or under "name#nth" where
// the calls of a name differ.
struct OutcomeOf {
    std::string call;
    Outcome outcome;
};
void expect_outcomes(const std::vector<FailedRun>& runs, const std::vector<OutcomeOf>& outcomes);
