// See short_of_memory.h.
#include "tests/support/short_of_memory.h"

#include <nlohmann/json.hpp>
#include <optional>

#include "tests/support/on_board.h"

namespace {

using Document = nlohmann::ordered_json;

constexpr std::uint64_t for_good_step = 16;

// How many members and elements of `whole` are missing in `left`, each counted once with all that
// is in it. None when `left` holds anything that `whole` does not, or in another order.
std::optional<int> count_losses(const Document& whole, const Document& left) {
    if (!whole.is_structured() || whole.type() != left.type())
        return whole == left ? std::optional(0) : std::nullopt;
    int losses = 0;
    auto next = left.items().begin();
    for (const auto& [key, value] : whole.items()) {
        std::optional<int> within;
        if (next != left.items().end() && (whole.is_array() || next.key() == key))
            within = count_losses(value, next.value());
        if (within)
            ++next;
        losses += within.value_or(1);
    }
    return next == left.items().end() ? std::optional(losses) : std::nullopt;
}

void expect_less(const Document& whole, const std::string& text, bool for_good) {
    std::optional<int> losses = count_losses(whole, Document::parse(text));
    ASSERT_TRUE(losses) << text;
    EXPECT_GE(*losses, 1) << text;
    EXPECT_TRUE(for_good || *losses == 1) << *losses << " in " << text;
}

} // namespace

std::uint64_t starve(sim::Board& board, const std::function<int(cJSON*)>& getter) {
    Json counted(createJsonObject());
    board.faults.clear();
    getter(counted);
    std::uint64_t allocations = board.faults.count(sim::Edge::allocation);
    const Document whole = Document::parse(compact(counted));
    auto run = [&](std::uint64_t nth, bool for_good) {
        SCOPED_TRACE((for_good ? "from allocation " : "allocation ") + std::to_string(nth));
        Json document(createJsonObject());
        board.faults.clear();
        board.faults.plan({sim::Edge::allocation, "", nth, for_good, 0, 0});
        EXPECT_EQ(getter(document), 0);
        board.faults.clear();
        board.trace.clear();
        EXPECT_EQ(recorded(), Codes{});
        expect_less(whole, compact(document), for_good);
    };
    for (std::uint64_t nth = 1; nth <= allocations && !testing::Test::HasFailure(); ++nth) {
        run(nth, false);
        if (nth % for_good_step == 1) {
            run(nth, true);
            EXPECT_EQ(report_of(getter).text, whole.dump());
        }
    }
    EXPECT_EQ(report_of(getter).text, whole.dump());
    return allocations;
}
