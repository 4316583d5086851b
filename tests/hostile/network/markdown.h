// Tables of a page, cell by cell.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

using Row = std::vector<std::string>;

struct Table {
    std::string heading; // of its section
    Row columns;
    std::vector<Row> rows;
};

// The table under that heading of the page; without rows where there is none.
Table read_table(const std::filesystem::path& page, const std::string& heading);

std::string show_row(const Row& row);
std::string show_table(const Table& table);
