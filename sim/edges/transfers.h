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

// Called with its URL before each transfer that the agent waits for; empty where nobody is to be.
using TransferWatcher = std::function<void(const std::string& url)>;
void watch_transfers(TransferWatcher watcher);

// Gets each transfer as it begins, before the agent has told it anything: to give it a socket of a
// test's own, for instance. Empty, and transfers are as libcurl makes them.
extern std::function<void(CURL*)> on_transfer;

} // namespace sim
