// One board for the whole torture, and every text that a failure may leave in its log.
#include "tests/torture/torture.h"

#include <fstream>
#include <set>

#include "base/errors.h"
#include "tests/support/on_board.h"
#include "tests/support/temp_folder.h"

namespace {

const std::set<std::string> failure_texts = {
    "firmware get fail",
    "summary info get fail",
    "management vlan get fail",
    "uplink port get fail",
    "reboot get fail",
    "dark_mode get fail",
    "port get fail",
    "snmp get fail",
    "stp get fail",
    "igmp get fail",
    "mirror get fail",
    "trunk get fail",
    "access get fail",
    "voice vlan get fail",
    "diagnostic get fail",
    "traceroute result get fail",
    "ping ipv4 result get fail",
    "qos enable get fail",
    "qos SchedulMeth get fail",
    "qos TurstMode get fail",
    "qos Cos get fail",
    "qos Dscp get fail",
    "acl mac get fail",
    "ace mac get fail",
    "acl ipv4 get fail",
    "ace ipv4 get fail",
    "Acl set fail",
    "Qos set fail",
    "Voice Vlan set fail",
    "LLDP set fail",
    "summary info set fail",
    "dark mode set fail",
    "port set fail",
    "snmp set fail",
    "stp set fail",
    "igmp set fail",
    "mirror set fail",
    "trunk set fail",
    "access set fail",
    "firmware set fail",
    "reboot set fail",
    "traceroute fail",
    "ping fail",
    "api_checkin: Network unreacherable"};

// One board for the whole torture: what a failing run leaves behind is what is looked for.
class Runner {
  public:
    explicit Runner(const TorturedRun& tortured)
        : tortured_(tortured), board_(folder_.path() / "board", scenario()) {
        reset_agent();
        tortured_.prepare(board_);
    }

    std::string run_cleanly() {
        board_.faults.clear();
        tortured_.run();
        judge();
        return tortured_.outcome();
    }

    std::uint64_t count(sim::Edge edge) {
        board_.faults.clear();
        tortured_.run();
        judge();
        return board_.faults.count(edge);
    }

    void run_with(const sim::Fault& fault) {
        board_.faults.clear();
        board_.faults.plan(fault);
        tortured_.run();
        board_.faults.clear();
        judge();
    }

  private:
    std::filesystem::path scenario() {
        auto file = folder_.path() / "small.json";
        std::ofstream(file) << small_switch;
        return file;
    }

    void judge() {
        EXPECT_LE(error_count, static_cast<std::uint32_t>(ERROR_LIST_SIZE));
        for (const std::string& line : board_.log)
            EXPECT_TRUE(failure_texts.contains(line)) << "log line \"" << line << "\"";
        board_.log.clear();
        board_.trace.clear();
        clear_errors();
    }

    const TorturedRun& tortured_;
    TempFolder folder_;
    sim::Board board_;
};

} // namespace

std::uint64_t torture(sim::Edge edge, const TorturedRun& tortured) {
    Runner runner(tortured);
    std::string golden = runner.run_cleanly();
    std::uint64_t calls = runner.count(edge);
    for (std::uint64_t nth = 1; nth <= calls; ++nth) {
        for (bool for_good : {false, true}) {
            SCOPED_TRACE((for_good ? "from call " : "call ") + std::to_string(nth));
            runner.run_with({edge, "", nth, for_good, torture_code, 0});
            if (testing::Test::HasFailure())
                return calls;
        }
    }
    EXPECT_EQ(runner.run_cleanly(), golden);
    return calls;
}
