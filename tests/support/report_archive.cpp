// The agent's memory is not touched here: it may be what a test makes scarce.
#include "tests/support/report_archive.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

#include "json/json_node.h"
#include "sim/library/board.h"

namespace {

using Document = nlohmann::ordered_json;

Document number(const cJSON* node) {
    if (node->type & NODE_UINT32)
        return node_uint32(node);
    if (node->type & NODE_UINT64)
        return node_uint64(node);
    if (node->valuedouble == node->valueint)
        return node->valueint;
    return node->valuedouble;
}

Document converted(const cJSON* node) {
    Document value;
    switch (node->type & NODE_KIND) {
    case cJSON_Object:
        value = Document::object();
        for (const cJSON* child = node->child; child; child = child->next)
            value[child->string ? child->string : ""] = converted(child);
        return value;
    case cJSON_Array:
        value = Document::array();
        for (const cJSON* child = node->child; child; child = child->next)
            value.push_back(converted(child));
        return value;
    case cJSON_Number:
        return number(node);
    case cJSON_String:
        return node->valuestring;
    case cJSON_True:
        return true;
    case cJSON_False:
        return false;
    default:
        return nullptr;
    }
}

// What a value looks like, its numbers and texts aside. Elements of an array that look alike count
// as one, so that it does not matter at which port of many a report was cut short.
std::string shape(const Document& value) {
    std::string text;
    if (value.is_array()) {
        std::set<std::string> shapes;
        for (const Document& item : value)
            shapes.insert(shape(item));
        for (const std::string& item : shapes)
            text += item + ",";
        return "[" + text + "]";
    }
    if (value.is_object()) {
        for (const auto& [name, item] : value.items())
            text += name + ":" + shape(item) + ",";
        return "{" + text + "}";
    }
    if (value.is_string())
        return value == "" ? "e" : "s";
    if (value.is_number())
        return value < 0 ? "-" : "n";
    return "b";
}

// The text with every number made 0.
std::string without_numbers(const Document& document) {
    std::string text;
    for (char character : document.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace)) {
        bool digit = character >= '0' && character <= '9';
        if (!digit)
            text += character;
        else if (text.empty() || text.back() != '0')
            text += '0';
    }
    return text;
}

bool is_starving() { return sim::board().faults.planned(sim::Edge::allocation); }

void keep(const char* kind, const Document& document, const std::string& identity) {
    namespace fs = std::filesystem;
    fs::create_directories(VX_REPORTS);
    std::string hash = std::to_string(std::hash<std::string>{}(identity));
    fs::path file = fs::path(VX_REPORTS) / (std::string(kind) + "-" + hash + ".json");
    if (fs::exists(file))
        return;
    fs::path unfinished = file.string() + "." + std::to_string(getpid());
    std::ofstream(unfinished) << document.dump(
        1, ' ', false, nlohmann::json::error_handler_t::replace);
    fs::rename(unfinished, file);
}

} // namespace

void keep_part(const cJSON* document) {
    if (!document || !document->child)
        return;
    Document part = converted(document);
    keep(
        is_starving() ? "starving" : "part", part,
        part.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
}

extern "C" {

void __real_vxc_get(cJSON* document);
void __wrap_vxc_get(cJSON* document);

void __wrap_vxc_get(cJSON* document) {
    __real_vxc_get(document);
    if (!document || !sim::has_board())
        return;
    Document report = converted(document);
    if (!sim::board().faults.planned())
        keep("whole", report, without_numbers(report));
    else
        keep(is_starving() ? "starving" : "failing", report, shape(report));
}
}
