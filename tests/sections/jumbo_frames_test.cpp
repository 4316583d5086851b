// The largest frame.
#include "sections/jumbo_frames.h"

#include "tests/support/on_board.h"

namespace {

class JumboFrames : public OnBoard {
  protected:
    int set(const std::string& object) {
        forget();
        Json document("{\"jumbo_frames\": " + object + "}");
        return vxc_jumbo_frmSet(document);
    }
    int set(int bytes) { return set("{\"size\": " + std::to_string(bytes) + "}"); }
};

} // namespace

TEST_F(JumboFrames, reports_the_size_that_the_chip_has) {
    device.chip.change([](sim::ChipState& chip) { chip.max_frame_bytes = 9000; });
    Report report = report_of(vxc_jumbo_frmGet);
    EXPECT_EQ(report.text, R"({"jumbo_frames":{"size":9000}})");
    EXPECT_EQ(report.result, 0);
}

TEST_F(JumboFrames, failing_read_leaves_the_object_empty) {
    fail("sal_switch_maxFrameSize_get", 8);
    EXPECT_EQ(report_of(vxc_jumbo_frmGet).text, R"({"jumbo_frames":{}})");
    EXPECT_EQ(recorded(), (Codes{8}));
}

TEST_F(JumboFrames, without_the_driver_the_read_fails_with_501) {
    device.driver_loaded = false;
    EXPECT_EQ(report_of(vxc_jumbo_frmGet).text, R"({"jumbo_frames":{}})");
    EXPECT_EQ(recorded(), (Codes{501}));
}

TEST_F(JumboFrames, sizes_from_1522_to_9216_are_accepted) {
    for (int bytes : {1522, 9216}) {
        EXPECT_EQ(set(bytes), 0);
        EXPECT_EQ(
            trace(), (Lines{"sal_switch_maxFrameSize_set(" + std::to_string(bytes) + ") = 0"}));
        EXPECT_EQ(device.chip.state().max_frame_bytes, static_cast<std::uint32_t>(bytes));
    }
}

TEST_F(JumboFrames, sizes_of_1521_and_9217_are_refused_with_28) {
    for (int bytes : {1521, 9217, 0, -1522}) {
        EXPECT_EQ(set(bytes), 28);
        EXPECT_EQ(recorded(), (Codes{28}));
        EXPECT_TRUE(trace().empty());
    }
}

TEST_F(JumboFrames, missing_size_or_object_does_nothing) {
    EXPECT_EQ(set("{}"), 0);
    EXPECT_EQ(set("7"), 0);
    Json other("{}");
    EXPECT_EQ(vxc_jumbo_frmSet(other), 0);
    EXPECT_TRUE(recorded().empty());
    EXPECT_TRUE(trace().empty());
}

TEST_F(JumboFrames, code_of_the_platform_is_recorded) {
    fail("sal_switch_maxFrameSize_set", 8);
    Json document(R"({"jumbo_frames": {"size": 2000}})");
    EXPECT_EQ(vxc_jumbo_frmSet(document), 8);
    EXPECT_EQ(recorded(), (Codes{8}));
}
