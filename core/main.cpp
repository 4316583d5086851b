// The cloud agent of the switch.
#include "core/main_loop.h"
#include "core/start_up.h"
#include "version/version.h"

// The agent takes no options, so a file of it is asked by `strings vx_cloud | grep '@(#)'`, and a
// process by the platform library, which finds this name as it finds the driver functions.
extern "C" {
__attribute__((visibility("default"))) extern const char vx_cloud_version[];
const char vx_cloud_version[] = "@(#)vx_cloud " VX_VERSION;
}

int main() {
    KeeperThread keeper = {};
    start_up(&keeper);
    for (;;)
        main_loop_turn(&keeper);
}
