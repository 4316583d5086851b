// Reading the tables: "[section]", "include FILE", "# remark", and rows of five columns.
#include "tests/torture/prescription.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace torture {

namespace {

constexpr std::size_t columns = 5;
constexpr const char* ditto = "\"";

std::string trimmed(const std::string& text) {
    std::size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos)
        return "";
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::vector<std::string> cells_of(const std::string& line) {
    std::vector<std::string> cells;
    for (std::size_t at = 0; at <= line.size();) {
        std::size_t end = std::min(line.find('|', at), line.size());
        cells.push_back(trimmed(line.substr(at, end - at)));
        at = end + 1;
    }
    return cells;
}

} // namespace

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    for (std::size_t at = 0; text != "-" && at < text.size();) {
        std::size_t end = std::min(text.find(separator, at), text.size());
        parts.push_back(trimmed(text.substr(at, end - at)));
        at = end + 1;
    }
    return parts;
}

bool Row::is_about(const std::string& call_made) const {
    if (!call_made.starts_with(call))
        return false;
    bool is_text = call.find('"') != std::string::npos; // such as the begin of a command
    return is_text || call_made.size() == call.size() ||
           std::string("(,)[").find(call_made[call.size()]) != std::string::npos;
}

Row* Section::find(const std::string& call_made) {
    auto row = std::find_if(
        rows.begin(), rows.end(), [&](const Row& each) { return each.is_about(call_made); });
    return row == rows.end() ? nullptr : &*row;
}

Prescription::Prescription(const std::string& name) { read(name); }

void Prescription::read(const std::string& name) {
    std::ifstream file(std::string(VX_PRESCRIPTIONS) + "/" + name + ".txt");
    if (!file)
        throw std::runtime_error("no prescription " + name);
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        std::string place = name + ".txt:" + std::to_string(number);
        if (line.empty() || line.starts_with("#"))
            continue;
        if (line.starts_with("["))
            begin_section(line.substr(1, line.find(']') - 1));
        else if (line.starts_with("include "))
            read(line.substr(8));
        else if (sections.empty() && !in_memory_)
            throw std::runtime_error(place + ": a row outside of any section");
        else
            add_row(place, line);
    }
}

void Prescription::begin_section(const std::string& name) {
    in_memory_ = name == "memory";
    if (!in_memory_)
        sections.push_back({name, {}});
}

void Prescription::add_row(const std::string& place, const std::string& line) {
    std::vector<std::string> cells = cells_of(line);
    std::vector<Row>& rows = in_memory_ ? memory.rows : sections.back().rows;
    if (cells.size() == 1) {
        rows.push_back({place, cells[0], "", "", "", ""});
        return;
    }
    if (cells.size() != columns)
        throw std::runtime_error(place + ": not five columns");
    Row row = {place, cells[0], cells[1], cells[2], cells[3], cells[4]};
    std::string* fields[] = {&row.codes, &row.log, &row.then, &row.left};
    for (std::string* field : fields) {
        if (*field != ditto)
            continue;
        auto above = std::find_if(
            rows.rbegin(), rows.rend(), [](const Row& each) { return each.can_fail(); });
        if (above == rows.rend())
            throw std::runtime_error(place + ": nothing above to repeat");
        const std::string* same[] = {&above->codes, &above->log, &above->then, &above->left};
        *field = *same[std::find(std::begin(fields), std::end(fields), field) - fields];
    }
    rows.push_back(row);
}

namespace {

void add_idle_rows(const Section& section, std::vector<std::string>& places) {
    for (const Row& row : section.rows)
        if (row.can_fail() ? row.injected == 0 : row.met == 0)
            places.push_back(row.place + ": " + row.call);
}

} // namespace

std::vector<std::string> Prescription::idle_rows() const {
    std::vector<std::string> places;
    for (const Section& section : sections)
        add_idle_rows(section, places);
    add_idle_rows(memory, places);
    return places;
}

} // namespace torture
