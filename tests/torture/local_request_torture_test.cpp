// A settings document that another program left, from the signal to the removal of its file.
#include <signal.h>

#include <filesystem>
#include <fstream>

#include "core/local_request.h"
#include "json/json_document.h"
#include "tests/support/on_board.h"
#include "tests/torture/torture.h"

namespace {

constexpr const char* request_file = "/tmp/vx_cloud_post";
constexpr const char* request = R"({"system": {"jumbo_frames": {"size": 9000}}})";

void leave(sim::Board& board, const std::string& text) {
    std::ofstream(board.path(request_file)) << text;
}

bool is_applied(sim::Board& board) { return board.device.chip.state().max_frame_bytes == 9000; }

bool is_removed(sim::Board& board) { return !std::filesystem::exists(board.path(request_file)); }

cJSON* show_state(sim::Board& board) {
    cJSON* state = createJsonObject();
    if (is_applied(board))
        addJsonObjectBoolItem(state, "applied", 1);
    if (is_removed(board))
        addJsonObjectBoolItem(state, "removed", 1);
    return state;
}

const torture::Scenario local_request = {
    "local_request", [](sim::Board& board) { leave(board, request); },
    [] { handleAction(SIGUSR1); }, show_state};

} // namespace

TEST(LocalRequestTorture, each_call_that_fails_has_the_outcome_of_its_row) {
    torture::torture(local_request);
}

class CutRequest : public OnBoard {};

// A program that writes while it is read, or a disk that is full.
TEST_F(CutRequest, file_that_ends_early_is_not_applied_and_does_not_stay) {
    const std::string text = request;
    for (std::size_t length = 0; length < text.size(); ++length) {
        leave(board, text.substr(0, length));
        handleAction(SIGUSR1);
        EXPECT_FALSE(is_applied(board)) << length;
        EXPECT_TRUE(is_removed(board)) << length;
        EXPECT_EQ(recorded(), Codes{});
    }
}

TEST_F(CutRequest, file_that_cannot_be_read_is_not_applied) {
    std::filesystem::create_directory(board.path(request_file));
    handleAction(SIGUSR1);
    EXPECT_FALSE(is_applied(board));
    EXPECT_FALSE(called("cmd_conf_startupConfig_save"));
}
