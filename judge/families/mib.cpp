// Traffic counters.
#include "platform/mib.h"

#include <cstring>
#include <set>

#include "judge/family.h"

namespace judge {

namespace {

const Parameter count = varying(gives_any("count"));

Operations reads() {
    return {
        {NAMED(sal_mib_etherStatsDropEvents_get), {port, count}},
        {NAMED(sal_mib_etherStatsOctets_get), {port, count}},
        {NAMED(sal_mib_etherStatsPkts_get), {port, count}},
        {NAMED(sal_mib_etherStatsBcastPkts_get), {port, count}},
        {NAMED(sal_mib_etherStatsMcastPkts_get), {port, count}},
        {NAMED(sal_mib_etherStatsCRCAlignErrs_get), {port, count}},
        {NAMED(sal_mib_etherStatsUnderSizePkts_get), {port, count}},
        {NAMED(sal_mib_etherStatsOverSizePkts_get), {port, count}},
        {NAMED(sal_mib_etherStatsFragments_get), {port, count}},
        {NAMED(sal_mib_etherStatsJabbers_get), {port, count}},
        {NAMED(sal_mib_etherStatsCollisions_get), {port, count}},
        {NAMED(sal_mib_etherStatsPkts64Octets_get), {port, count}},
        {NAMED(sal_mib_etherStatsPkts65to127Octets_get), {port, count}},
        {NAMED(sal_mib_etherStatsPkts128to255Octets_get), {port, count}},
        {NAMED(sal_mib_etherStatsPkts256to511Octets_get), {port, count}},
        {NAMED(sal_mib_etherStatsPkts512to1023Octets_get), {port, count}},
        {NAMED(sal_mib_etherStatsPkts1024to1518Octets_get), {port, count}},
    };
}

// The table's getters are rows like the others, under their place in it.
Operations table_reads() {
    Operations rows;
    for (std::uint32_t row = 0; row < user_mibtbls.row_count && row < MIB_ROWS; ++row)
        if (MibGetter get = user_mibtbls.rows[row].get) {
            std::string name = "user_mibtbls[" + std::to_string(row) + "]";
            rows.push_back({name.c_str(), get, {port, count}});
        }
    return rows;
}

bool judge_table() {
    bench->enter("user_mibtbls.row_count");
    bench->leave();
    bool complete = bench->holds(
        user_mibtbls.row_count == MIB_ROWS && user_mibtbls.rows, reason::out_of_range, "12 rows",
        std::to_string(user_mibtbls.row_count) + " rows");
    std::set<std::string> names;
    for (std::uint32_t row = 0; complete && row < MIB_ROWS; ++row) {
        const char* name = user_mibtbls.rows[row].descriptor;
        bench->enter("user_mibtbls[" + std::to_string(row) + "]");
        bench->leave();
        bench->holds(
            name && user_mibtbls.rows[row].get && names.insert(name).second, reason::out_of_range,
            "the counter's name, and its getter", name ? name : "null");
    }
    return complete;
}

// A counter grows until it is cleared.
void judge_growth(const Operation& operation) {
    for (const Numbers& inputs : good_inputs(operation.parameters)) {
        std::uint64_t counts[2] = {};
        for (std::uint64_t& value : counts) {
            Outcome outcome = make_call(operation, inputs);
            if (outcome.code != 0)
                return;
            std::memcpy(&value, outcome.outputs.back().data(), sizeof value);
        }
        bench->holds(
            counts[1] >= counts[0], reason::disagrees, "a counter grows until it is cleared",
            std::to_string(counts[0]) + ", then " + std::to_string(counts[1]));
    }
}

void agreement() {
    if (!judge_table())
        return;
    Operations rows = table_reads();
    judge_reads(rows);
    for (const Operation& operation : rows)
        judge_growth(operation);
    for (const Operation& operation : reads())
        judge_growth(operation);
}

} // namespace

const Family mib_family = {"mib", reads, agreement, nullptr, nullptr};

} // namespace judge
