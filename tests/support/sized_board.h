// A board whose switch has another number of logical ports than the default one, or anything else
// that a scenario says. No other board may be in use while it lives.
#pragma once

#include <fstream>
#include <string>

#include "sim/library/board.h"
#include "tests/support/on_board.h"
#include "tests/support/temp_folder.h"

inline std::string ports_scenario(int logical_ports) {
    return R"({"hardware":{"logical_ports":)" + std::to_string(logical_ports) + "}}";
}

class SizedBoard {
  public:
    explicit SizedBoard(int logical_ports) : SizedBoard(ports_scenario(logical_ports)) {}
    explicit SizedBoard(const std::string& scenario) : board(folder.path(), write(scenario)) {
        board.trace.keep();
        reset_agent();
    }

  private:
    std::filesystem::path write(const std::string& scenario) const {
        std::filesystem::path file = folder.path() / "scenario.json";
        std::ofstream(file) << scenario;
        return file;
    }

    TempFolder folder;

  public:
    sim::Board board;
    sim::Switch& device = board.device;
};
