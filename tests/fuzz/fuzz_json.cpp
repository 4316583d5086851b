// Texts of the cloud as documents, addresses and device names. Whatever parses must print, what was
// printed must parse, and printing settles: a number is rounded once or twice, then never again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "base/errors.h"
#include "base/validators.h"
#include "json/json_document.h"
#include "json/json_print.h"
#include "sim/library/board.h"
#include "tests/support/temp_folder.h"

namespace {

void require(bool holds) {
    if (!holds)
        std::abort();
}

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

void check_texts(const char* input) {
    int name = systemName_validate(input);
    require(name == 0 || name == ERROR_BAD_VALUE);
    ipv4_addr_validate(input);
    clear_errors();
    sim::board().trace.clear();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static TempFolder folder;
    static sim::Board board(folder.path());
    std::string input(reinterpret_cast<const char*>(data), size);
    check_document(input.c_str());
    check_texts(input.c_str());
    return 0;
}
