// What all transfers of the agent have in common: signed requests, the time, the connection keeper.
#pragma once

#include <curl/curl.h>

#include "transport/reply.h"

// The reply goes to `reply`, which must outlive the transfer; one whose head has no end is not
// taken. No variable of the environment sends the transfer elsewhere, and no signal handler is
// changed, for all threads share them. A peer that is gone ends the connection in the end.
void set_common_options(CURL* curl, api_reply* reply);

// Certificates are verified against the switch's directory of authorities, and nothing else.
void set_authorities(CURL* curl);
