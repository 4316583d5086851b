// Settings documents as the cloud or a local request may hold them, applied to a switch as new. The
// report can be built afterwards whatever was applied.
#include "agent_on_board.h"
#include "core/dispatch.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fresh_board();
    std::string input(reinterpret_cast<const char*>(data), size);
    cJSON* document = parseJsonString(input.c_str());
    vxc_set(document);
    deleteJsonObject(document);
    require(error_count <= ERROR_LIST_SIZE);
    cJSON* report = createJsonObject();
    vxc_get(report);
    deleteJsonObject(report);
    return 0;
}
