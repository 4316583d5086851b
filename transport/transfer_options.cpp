// The options that libcurl gets for every transfer. Its own defaults would be others.
#include "transport/transfer_options.h"

void set_common_options(CURL* curl, api_reply* reply) {
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, api_write_cb);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, reply);
    curl_easy_setopt(curl, CURLOPT_HEADERFUNCTION, api_head_cb);
    curl_easy_setopt(curl, CURLOPT_HEADERDATA, reply);
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl, CURLOPT_PROXY, ""); // none, also where the environment names one
    curl_easy_setopt(curl, CURLOPT_TCP_KEEPALIVE, 1L);
}

// The bundle whose path was built into libcurl is not trusted besides; where that file is missing,
// it would fail every request.
void set_authorities(CURL* curl) {
    curl_easy_setopt(curl, CURLOPT_CAPATH, "/etc/ssl/certs/");
    curl_easy_setopt(curl, CURLOPT_CAINFO, nullptr);
}
