// The cloud agent of the switch.
#include "core/main_loop.h"
#include "core/start_up.h"

int main() {
    KeeperThread keeper = {};
    start_up(&keeper);
    for (;;)
        main_loop_turn(&keeper);
}
