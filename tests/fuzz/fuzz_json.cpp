// Texts of the cloud as documents. Whatever parses must print, what was printed must parse and be
// JSON in UTF-8 to others, too, and printing settles: a number is rounded once or twice, then never
// again.
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "json/json_document.h"
#include "json/json_print.h"
#include "tests/fuzz/support/fresh_board.h"

namespace {

std::string print_and_delete(cJSON* root) {
    std::unique_ptr<char, decltype(&std::free)> text(printJson(root), &std::free);
    deleteJsonObject(root);
    require(text != nullptr);
    return text.get();
}

std::string print_again(const std::string& text) {
    cJSON* root = parseJsonString(text.c_str());
    require(root != nullptr);
    return print_and_delete(root);
}

void check_document(const char* input) {
    cJSON* root = parseJsonString(input);
    if (!root)
        return;
    // 9.9999999e-07 goes out as 1.000000e-06, that as 0.0, and that as 0.
    std::string text = print_and_delete(root);
    for (int round = 0; round < 2; ++round)
        text = print_again(text);
    require(print_again(text) == text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Run run;
    check_document(std::string(reinterpret_cast<const char*>(data), size).c_str());
    return 0;
}
