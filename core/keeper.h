// The connection keeper: a thread that holds a request open at the cloud, whose answer is what the
// cloud wants done at once.
#pragma once

#include <pthread.h>

struct KeeperThread {
    pthread_t handle;
    bool running; // false until it could be started
    bool ending;  // it was told to end, but has something to finish first
};

// Starts the thread for the current ConnectionKeeperHost. Where the system has no room for another
// thread, connection_url_change is raised, so that the main loop tries again.
void start_keeper(KeeperThread* keeper);

// Ends the thread, also amidst a transfer, and releases what it was using. Clears
// connection_url_change. An action is finished first, and a check-in that follows it: where that
// takes more than two seconds the result is false, and the thread ends when it can. Then this is to
// be called again, until the result is true.
bool stop_keeper(KeeperThread* keeper);

// "http://HOST/router/listen/MAC"; at most `size` bytes with the terminator.
void format_listen_url(char* url, int size);

// One request and what comes of it. `*failures` counts failed requests in a row.
void keeper_turn(const char* url, int* failures);

extern "C" {
// The thread itself; it ends only by being cancelled.
void* threadFunc(void*);
}
