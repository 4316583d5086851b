// Local requests: another program on the switch leaves a settings document in "/tmp/vx_cloud_post"
// and sends SIGUSR1.
//
// The handler allocates, reads files and applies settings, so it may interrupt nothing that does
// the like: SIGUSR1 stays blocked in every thread and is let in at points of the main thread alone.
// A command that the agent runs lets it in too, but only to put it off.
#pragma once

extern "C" {

// Applies the document and removes its file. Does nothing for any other signal than SIGUSR1 (16 on
// the switch), nor for anything but a regular file. Where memory is short the file stays for the
// next signal.
void handleAction(int signal_number);
}

// For the calling thread, which takes the requests from now on, and those that it starts.
void block_local_requests();

// Takes a request that is waiting.
void take_local_requests();

// Sleeps while requests may come in; one that does cuts the sleep short. Returns the unslept
// seconds. On a thread that takes no requests it just sleeps.
unsigned sleep_taking_requests(unsigned seconds);

// The same to the end, whatever comes in.
void sleep_out(unsigned seconds);
