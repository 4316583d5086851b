// What libcurl knows about a finished transfer, for an engineer who asks why the cloud cannot be
// reached.
#pragma once

#include <curl/curl.h>

extern "C" {

// Queries the transfer's statistics and writes each to the debug console. Stands between
// curl_easy_perform and curl_easy_cleanup. Returns 0.
int get_infos(CURL* curl);
}
