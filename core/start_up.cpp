// The start, in the order in which the firmware's services can bear it.
#include "core/start_up.h"

#include <curl/curl.h>
#include <signal.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include "base/credentials.h"
#include "base/errors.h"
#include "base/identity.h"
#include "base/state.h"
#include "core/local_request.h"
#include "platform/vxcloud.h"

namespace {

enum { SERVICES_COME_UP = 30, KEEPER_COMES_UP = 2 }; // seconds

// What a start script may leave in the environment: where libcurl writes down the keys of its
// transfers, and by which other names the resolver looks hosts up.
const char* const misleading_variables[] = {"SSLKEYLOGFILE", "HOSTALIASES", "LOCALDOMAIN"};

void forget_environment() {
    for (const char* name : misleading_variables)
        unsetenv(name);
}

void write_process_id() {
    FILE* file = fopen("/var/run/vx_cloud.pid", "w");
    if (!file)
        return;
    fprintf(file, "%d", getpid());
    fclose(file);
}

void set_transport() {
    checkin_connect_timeout = TRANSFER_TIMEOUT;
    checkin_timeout = TRANSFER_TIMEOUT;
    checkin_type = CHECKIN_ANY_ADDRESS;
}

// libcurl's own first use of itself is not safe between threads.
void launch_keeper(KeeperThread* keeper) {
    sal_vxcloud_connkeeper_host_get(ConnectionKeeperHost);
    curl_global_init(CURL_GLOBAL_DEFAULT);
    start_keeper(keeper);
}

void load_cloud_settings() {
    gCattr = {};
    sal_vxcloud_checkin_host_get(CheckinHost);
    sal_vxcloud_checkin_interval_get(&CheckinInterval);
    sal_vxcloud_fallback_host_get(fallback_host);
    format_checkin_path();
}

void load_credentials() {
    api_key_get(gCattr.key);
    api_secret_get(gCattr.secret);
}

void outlive_signal(int) {}

} // namespace

void start_up(KeeperThread* keeper) {
    forget_environment();
    block_local_requests();
    // A cloud that closes a connection while it is written to costs the transfer, not the process.
    // Commands would inherit that a signal is ignored, but not a handler.
    signal(SIGPIPE, outlive_signal);
    write_process_id();
    signal(SIGUSR1, handleAction);
    name_switch();
    set_transport();
    sleep_taking_requests(SERVICES_COME_UP);
    pthread_mutex_init(&vx_fm_mutex, nullptr);
    launch_keeper(keeper);
    load_cloud_settings();
    checkin_connect_establish = 0;
    checkin_connect_retry = 0;
    sleep_taking_requests(KEEPER_COMES_UP);
    load_credentials();
    clear_errors();
}
