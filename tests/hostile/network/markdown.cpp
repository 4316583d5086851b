// A line that begins with a bar is a row of a table.
#include "tests/hostile/network/markdown.h"

#include <fstream>

namespace {

std::string trim(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(' ');
    const std::size_t end = text.find_last_not_of(' ');
    return begin == std::string::npos ? "" : text.substr(begin, end - begin + 1);
}

Row cells_of(const std::string& line) {
    Row cells;
    for (std::size_t at = 1, end; (end = line.find('|', at)) != std::string::npos; at = end + 1)
        cells.push_back(trim(line.substr(at, end - at)));
    return cells;
}

} // namespace

Table read_table(const std::filesystem::path& page, const std::string& heading) {
    Table table{heading, {}, {}};
    std::ifstream in(page);
    bool within = false;
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with("## "))
            within = line == "## " + heading;
        if (!within || !line.starts_with("|") || line.starts_with("|---"))
            continue;
        if (table.columns.empty())
            table.columns = cells_of(line);
        else
            table.rows.push_back(cells_of(line));
    }
    return table;
}

std::string show_row(const Row& row) {
    std::string line = "|";
    for (const std::string& cell : row)
        line += " " + cell + " |";
    return line;
}

std::string show_table(const Table& table) {
    std::string text = "## " + table.heading + "\n\n" + show_row(table.columns) + "\n|";
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        text += "---|";
    for (const Row& row : table.rows)
        text += "\n" + show_row(row);
    return text + "\n";
}
