// Local requests; see local_request.h.
#include "core/local_request.h"

#include <errno.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include "base/debug.h"
#include "core/dispatch.h"
#include "core/redact.h"
#include "json/json_document.h"

namespace {

const char request_path[] = "/tmp/vx_cloud_post";
enum { LONGEST_REQUEST = 20480, COMMAND_SIZE = 128 };

void apply_request(const char* content) {
    cJSON* document = parseJsonString(content);
    if (document)
        vxc_set(document);
    else
        debug_print("\n\nInput json format error\n\n\n");
    deleteJsonObject(document);
}

void show_content(const char* content) {
    char* shown = debug_flag ? redact_account(content) : nullptr;
    if (shown)
        debug_print("\n\ncontent %s\n\n\n", shown);
    free(shown);
}

// Reads the request into a buffer that is zeroed and one byte longer than the longest request.
bool read_request(char* content) {
    FILE* file = fopen(request_path, "r");
    if (!file) {
        debug_print("\ncontent not exist\n\n\n");
        return false;
    }
    size_t length = fread(content, 1, LONGEST_REQUEST, file);
    fclose(file);
    debug_print("\n\ncontent length : %d\n\n\n", static_cast<int>(length));
    show_content(content);
    return true;
}

void remove_request() {
    char command[COMMAND_SIZE] = "";
    snprintf(command, sizeof command, "rm %s", request_path);
    system(command);
    debug_print("\n\nDone and clean content\n\n\n");
}

void serve_signal(int signal_number, char* content) {
    if (signal_number != SIGUSR1) {
        debug_print("\n\nLeave\n\n\n");
        return;
    }
    debug_print("\n\n %d Get signal\n\n\n", getpid());
    if (!read_request(content))
        return;
    apply_request(content);
    remove_request();
}

} // namespace

void handleAction(int signal_number) {
    int interrupted = errno;
    char* content = static_cast<char*>(calloc(LONGEST_REQUEST + 1, 1));
    if (content)
        serve_signal(signal_number, content);
    free(content);
    errno = interrupted;
}

namespace {

void change_mask(int how) {
    sigset_t requests;
    sigemptyset(&requests);
    sigaddset(&requests, SIGUSR1);
    pthread_sigmask(how, &requests, nullptr);
}

} // namespace

void block_local_requests() { change_mask(SIG_BLOCK); }

// A signal that waits is delivered before its unblocking returns.
void take_local_requests() {
    change_mask(SIG_UNBLOCK);
    change_mask(SIG_BLOCK);
}

unsigned sleep_taking_requests(unsigned seconds) {
    change_mask(SIG_UNBLOCK);
    unsigned left = sleep(seconds);
    change_mask(SIG_BLOCK);
    return left;
}
