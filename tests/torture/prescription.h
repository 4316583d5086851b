// What is to come of each call that fails: tables under prescription/, one a scenario, read here
// and meant to be read by people. Their form is described in prescription/README.md.
#pragma once

#include <string>
#include <vector>

namespace torture {

struct Row {
    std::string place; // file and line
    std::string call;
    std::string codes; // "" for a call that cannot fail
    std::string log;
    std::string then;
    std::string left;
    int met = 0;      // how often the clean run makes the call
    int injected = 0; // how often it was made to fail

    bool can_fail() const { return !codes.empty(); }
    // Whether the row is about a call as the trace shows it, "name(arguments)". The row's own call
    // is a name, or a name with its first arguments.
    bool is_about(const std::string& call_made) const;
};

struct Section {
    std::string name;
    std::vector<Row> rows;

    Row* find(const std::string& call_made);
};

class Prescription {
  public:
    // Reads prescription/NAME.txt. Throws std::runtime_error with place and reason.
    explicit Prescription(const std::string& name);

    // The places of rows that no run of a scenario came by.
    std::vector<std::string> idle_rows() const;

    std::vector<Section> sections;
    Section memory; // rows for what allocations lose, not for calls

  private:
    void read(const std::string& name);
    void begin_section(const std::string& name);
    void add_row(const std::string& place, const std::string& line);

    bool in_memory_ = false;
};

// The parts of a text between separators, without blanks around them; none of an empty text or "-".
std::vector<std::string> split(const std::string& text, char separator);

} // namespace torture
