// Files in the place of a local request. Whatever is in one, it is gone afterwards.
#include <signal.h>

#include <filesystem>

#include "core/local_request.h"
#include "tests/fuzz/support/document_mutator.h"
#include "tests/fuzz/support/fresh_board.h"
#include "tests/fuzz/support/judgement.h"
#include "vocabulary.h"

extern "C" std::size_t
LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most, unsigned seed) {
    return mutate_document(settings_members, data, size, most, seed);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Run run;
    put_file(run.board, "/tmp/vx_cloud_post", data, size);
    handleAction(SIGUSR1);
    require(!std::filesystem::exists(run.board.path("/tmp/vx_cloud_post")));
    judge_setters(run.board.trace.lines());
    return 0;
}
