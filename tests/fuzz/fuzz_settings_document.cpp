// Settings documents as the cloud or a local request may hold them, applied to a switch as new. No
// setter is called with what its header rules out, and the report can be built whatever was
// applied.
#include <string>

#include "base/debug.h"
#include "base/errors.h"
#include "core/dispatch.h"
#include "json/json_document.h"
#include "tests/fuzz/support/document_mutator.h"
#include "tests/fuzz/support/fresh_board.h"
#include "tests/fuzz/support/judgement.h"
#include "vocabulary.h"

extern "C" std::size_t
LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most, unsigned seed) {
    return mutate_document(settings_members, data, size, most, seed);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(
    const std::uint8_t* one, std::size_t one_size, const std::uint8_t* other,
    std::size_t other_size, std::uint8_t* out, std::size_t most, unsigned seed) {
    return cross_documents(one, one_size, other, other_size, out, most, seed);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Run run;
    std::string input(reinterpret_cast<const char*>(data), size);
    cJSON* document = parseJsonString(input.c_str());
    debug_flag = one_in(16, data, size);
    vxc_set(document);
    if (one_in(4, data, size)) // and finds what it has made
        vxc_set(document);
    deleteJsonObject(document);
    require(error_count <= ERROR_LIST_SIZE);
    judge_setters(run.board.trace.lines());
    if (one_in(500, data, size))
        judge_report(vxc_get);
    return 0;
}
