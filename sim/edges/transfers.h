// Transfers of the agent, as libcurl was told to make them.
#pragma once

#include <curl/curl.h>

#include <functional>
#include <optional>
#include <string>

namespace sim {

// The number that libcurl accepted for an option (a CURLoption) of the last transfer to that URL,
// if it was given one.
std::optional<long> transfer_option(const std::string& url, int option);

// Lets transfers that begin from now on end after so many seconds of the wall, whatever they were
// given, for nobody waits half an hour. 0: as they were given.
void cut_time_outs(long seconds);

// Gets each transfer as it begins, before the agent has told it anything: to give it a socket of a
// test's own, for instance. Empty, and transfers are as libcurl makes them.
extern std::function<void(CURL*)> on_transfer;

} // namespace sim
