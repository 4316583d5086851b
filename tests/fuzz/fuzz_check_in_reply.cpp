// Replies to a check-in, byte by byte as the connection brings them: status line, header lines,
// chunks and document, for the cloud's host and, where the reply makes it that, for the fallback's.
#include <string>

#include "base/debug.h"
#include "base/errors.h"
#include "core/check_in.h"
#include "tests/fuzz/support/account.h"
#include "tests/fuzz/support/answers.h"
#include "tests/fuzz/support/fresh_board.h"
#include "tests/fuzz/support/judgement.h"
#include "tests/fuzz/support/whole_reports.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Run run;
    start_agent();
    const std::string input(reinterpret_cast<const char*>(data), size);
    Answers answers(input, input);
    debug_flag = one_in(8, data, size);
    whole_reports = one_in(500, data, size);
    api_checkin();
    require(error_count <= ERROR_LIST_SIZE);
    judge_setters(run.board.trace.lines());
    return 0;
}
