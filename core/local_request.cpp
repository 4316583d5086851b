// The request file is read, applied and removed within the signal's handler.
#include "core/local_request.h"

#include <errno.h>
#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/command.h"
#include "base/debug.h"
#include "core/dispatch.h"
#include "core/redact.h"
#include "json/json_document.h"

namespace {

enum { LONGEST_REQUEST = 20480 };

// The thread that takes requests, once there is one.
pthread_t taker;
bool has_taker;

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

// Anybody may put something else under the name: opening a FIFO would wait for its other end.
int open_request() {
    int file = open("/tmp/vx_cloud_post", O_RDONLY | O_NONBLOCK | O_NOCTTY);
    struct stat status;
    if (file < 0 || (fstat(file, &status) == 0 && S_ISREG(status.st_mode)))
        return file;
    close(file);
    return -1;
}

size_t read_content(int file, char* content) {
    size_t length = 0;
    while (length < LONGEST_REQUEST) {
        ssize_t count = read(file, content + length, LONGEST_REQUEST - length);
        if (count <= 0)
            break;
        length += static_cast<size_t>(count);
    }
    return length;
}

// Reads the request into a buffer that is zeroed and one byte longer than the longest request.
bool read_request(char* content) {
    int file = open_request();
    if (file < 0) {
        debug_print("\ncontent not exist\n\n\n");
        return false;
    }
    size_t length = read_content(file, content);
    close(file);
    debug_print("\n\ncontent length : %d\n\n\n", static_cast<int>(length));
    show_content(content);
    return true;
}

void remove_request() {
    run_command("rm /tmp/vx_cloud_post");
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
    if (is_put_off_by_command(has_taker ? taker : pthread_self()))
        return;
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

void block_local_requests() {
    taker = pthread_self();
    has_taker = true;
    change_mask(SIG_BLOCK);
}

// A signal that waits is delivered before its unblocking returns.
void take_local_requests() {
    change_mask(SIG_UNBLOCK);
    change_mask(SIG_BLOCK);
}

unsigned sleep_taking_requests(unsigned seconds) {
    if (!has_taker || !pthread_equal(pthread_self(), taker))
        return sleep(seconds);
    change_mask(SIG_UNBLOCK);
    unsigned left = sleep(seconds);
    change_mask(SIG_BLOCK);
    return left;
}

void sleep_out(unsigned seconds) {
    while (seconds)
        seconds = sleep_taking_requests(seconds);
}
