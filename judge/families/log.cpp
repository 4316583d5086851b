// The system log.
#include "platform/log.h"

#include "judge/family.h"

namespace judge {

namespace {

void changes() {
    bench->works(
        ASK(sys_log, int{SYS_LOG_FACILITY_CLOUD}, int{SYS_LOG_LEVEL_CLOUD},
            "platform_judge wrote this line"),
        "appends one line");
}

} // namespace

const Family log_family = {"log", nullptr, nullptr, nullptr, changes};

} // namespace judge
