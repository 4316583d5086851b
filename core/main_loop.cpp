// A turn of the main loop, and the sleeps between turns.
#include "core/main_loop.h"

#include "base/debug.h"
#include "base/state.h"
#include "core/check_in.h"
#include "core/local_request.h"
#include "platform/vxcloud.h"

namespace {

enum { PAUSE_WITHOUT_CONNECTION = 10 }; // seconds

// A keeper amidst an action, such as a traceroute of many minutes, does not hold up the check-ins:
// it is looked after again in the next turn.
void follow_keeper_host(KeeperThread* keeper) {
    if (!keeper->ending)
        debug_print("connection_url_change\n\n");
    if (!stop_keeper(keeper))
        return;
    start_keeper(keeper);
    debug_print("connection_url_change end\n\n");
}

// A local request does not shorten the interval.
void sleep_out_interval() {
    debug_print("main : checkin_connect_establish\n");
    unsigned left = sleep_taking_requests(static_cast<unsigned>(CheckinInterval));
    while (left) {
        debug_print("still need sleep %u\n\n\n", left);
        left = sleep_taking_requests(left);
        debug_print("need sleep %u\n\n\n", left);
    }
}

void pause_before_retry() {
    debug_print("main : checkin_connect_not_establish\n");
    if (checkin_connect_retry == 1) {
        checkin_connect_retry = 0;
        return;
    }
    debug_print("main :  sleep(10)\n");
    sleep_taking_requests(PAUSE_WITHOUT_CONNECTION);
}

} // namespace

void main_loop_turn(KeeperThread* keeper) {
    debug_print("main : sal_vxcloud_debug_flag_get\n");
    sal_vxcloud_debug_flag_get(&debug_flag);
    debug_print("main : restart to api_checkin\n");
    api_checkin();
    debug_print("main : api_checkin finish\n");
    if (connection_url_change || keeper->ending)
        follow_keeper_host(keeper);
    take_local_requests();
    if (setting_from_cloud)
        debug_print("main : setting_from_cloud\n");
    else if (checkin_connect_establish)
        sleep_out_interval();
    else
        pause_before_retry();
}
