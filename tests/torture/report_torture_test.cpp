// The report of a switch on which there is something to report in every section.
#include "core/dispatch.h"
#include "tests/support/on_board.h"
#include "tests/torture/switch_in_use.h"
#include "tests/torture/torture.h"

namespace {

cJSON* document;

const torture::Scenario report = {
    "report",
    [](sim::Board& board) {
        torture::put_switch_to_use(board);
        document = createJsonObject();
    },
    [] { vxc_get(document); }, [](sim::Board&) { return document; }};

} // namespace

TEST(ReportTorture, each_call_that_fails_has_the_outcome_of_its_row) { torture::torture(report); }
