// Diagnosis: the lock around traceroute. The cable test interrupts a link and has its own option.
#include "platform/diag.h"

#include "judge/changes.h"
#include "judge/family.h"

namespace judge {

namespace {

// Somebody on the switch may run a traceroute just now; the judge waits for nobody.
void changes() {
    if (ASK(sal_sys_tracerouteLock_check) != 0)
        return bench->remark("a traceroute runs: its lock is not judged");
    if (!bench->works(ASK(sal_sys_tracerouteLock_take), "takes the lock"))
        return;
    Undo undo("sal_sys_tracerouteLock_give", {});
    bench->refuses(ASK(sal_sys_tracerouteLock_check), "_check fails while it is held");
    bench->refuses(ASK(sal_sys_tracerouteLock_take), "_take fails when it is held");
    bench->works(ASK(sal_sys_tracerouteLock_give), "gives it back");
    bench->works(ASK(sal_sys_tracerouteLock_check), "the lock was given back");
    bench->works(ASK(sal_sys_tracerouteLock_take), "the lock was given back");
}

} // namespace

const Family diag_family = {"diag", nullptr, nullptr, nullptr, changes};

} // namespace judge
