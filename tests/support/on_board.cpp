// The board as a test sees it: without the calls that only count ports.
#include "tests/support/on_board.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "base/errors.h"
#include "json/json_print.h"
#include "tests/support/report_archive.h"

namespace {

bool is_port_count(const std::string& line) { return line.starts_with("sys_logic_port_num_ret("); }

Lines without_port_counts(Lines lines) {
    std::erase_if(lines, is_port_count);
    return lines;
}

} // namespace

Lines OnBoard::trace() const { return without_port_counts(board.trace.lines()); }

Lines OnBoard::calls() const {
    Lines names = trace();
    for (std::string& line : names)
        line.erase(std::min(line.find('('), line.size()));
    return names;
}

bool OnBoard::called(const std::string& name) const {
    Lines names = board.trace.calls();
    return std::find(names.begin(), names.end(), name) != names.end();
}

void OnBoard::forget() {
    board.trace.clear();
    board.log.clear();
    board.faults.clear();
    std::filesystem::remove(board.path("/dev/console"));
    clear_errors();
}

void OnBoard::fail(const std::string& call, int code, int nth) {
    board.faults.plan({sim::Edge::platform, call, static_cast<std::uint64_t>(nth), false, code, 0});
}

void OnBoard::fail_always(const std::string& call, int code) {
    board.faults.plan({sim::Edge::platform, call, 1, true, code, 0});
}

Lines OnBoard::console() const {
    Lines lines;
    std::istringstream in(board.console());
    for (std::string line; std::getline(in, line);)
        if (!line.empty())
            lines.push_back(line);
    return lines;
}

std::string OnBoard::file(const std::string& path) const {
    std::ifstream in(board.path(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void OnBoard::put_file(const std::string& path, const std::string& content) {
    std::filesystem::create_directories(board.path(path).parent_path());
    std::ofstream(board.path(path), std::ios::binary) << content;
}

Codes recorded() {
    Codes codes;
    for (std::uint32_t i = 0; i < error_count; ++i)
        codes.push_back(static_cast<int>(error_flags[i]));
    return codes;
}

Json::Json(const std::string& text) : node_(parseJsonString(text.c_str())) {
    if (!node_)
        throw std::invalid_argument("not JSON: " + text);
}

std::string compact(const cJSON* node) {
    char* printed = printJson(node);
    if (!printed)
        return "";
    std::string text = nlohmann::ordered_json::parse(printed).dump();
    std::free(printed);
    return text;
}

Report report_of(const std::function<int(cJSON*)>& getter) {
    Json document(createJsonObject());
    int result = getter(document);
    keep_part(document);
    return {result, compact(document)};
}

namespace {

// One run on a board of its own, with an optional fault; `judge` sees how it ended.
void run_once(
    const std::function<void(sim::Board&)>& prepare, const std::function<int(cJSON*)>& run,
    const std::string& scenario, const sim::Fault* fault,
    const std::function<void(const sim::Board&, int result, const cJSON* document)>& judge) {
    TempFolder folder;
    std::filesystem::path file;
    if (!scenario.empty())
        std::ofstream(file = folder.path() / "scenario.json") << scenario;
    sim::Board board(folder.path(), file);
    board.trace.keep();
    reset_agent();
    prepare(board);
    clear_errors();
    board.trace.clear();
    board.faults.clear();
    if (fault)
        board.faults.plan(*fault);
    Json document(createJsonObject());
    int result = run(document);
    keep_part(document);
    judge(board, result, document);
}

// Calls that return a value instead of a code cannot fail.
bool can_fail(const std::string& name) {
    if (name.starts_with("sys_util_bitmask"))
        return false;
    return name.starts_with("sys_util_") || name.starts_with("sal_util_numstr") ||
           (!name.ends_with("_ret") && name != "sleep" && name != "system" && name != "ioctl" &&
            name != "transfer" && name != "sys_log" && name != "clock_settime" &&
            name != "__res_init");
}

} // namespace

std::vector<FailedRun> fail_each_call(
    const std::function<void(sim::Board&)>& prepare, const std::function<int(cJSON*)>& run,
    int code, const std::string& scenario, int most) {
    Lines names;
    run_once(prepare, run, scenario, nullptr, [&](const sim::Board& board, int, const cJSON*) {
        names = board.trace.calls();
    });
    std::vector<FailedRun> runs;
    std::map<std::string, int> seen;
    for (const std::string& name : names) {
        if (!can_fail(name))
            continue;
        int nth = ++seen[name];
        if (nth > most)
            continue;
        sim::Fault fault{
            sim::Edge::platform, name, static_cast<std::uint64_t>(nth), false, code, 0};
        run_once(
            prepare, run, scenario, &fault,
            [&](const sim::Board& board, int result, const cJSON* document) {
                Lines all = board.trace.lines();
                std::string failure = " = " + std::to_string(code);
                auto at = std::find_if(all.begin(), all.end(), [&](const std::string& line) {
                    return line.starts_with(name + "(") && line.ends_with(failure);
                });
                Lines after;
                for (auto line = at == all.end() ? at : at + 1; line != all.end(); ++line)
                    if (!is_port_count(*line))
                        after.push_back(line->substr(0, line->find('(')));
                runs.push_back({name, nth, result, recorded(), after, compact(document)});
            });
    }
    return runs;
}
