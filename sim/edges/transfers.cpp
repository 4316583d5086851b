// Transfers of the agent are real ones, traced, failed where the fault plan says so, checked
// against the board's certificates, and heard where a check-in fails.
#include "sim/edges/transfers.h"

#include <curl/curl.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cctype>
#include <cstdarg>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

#include "sim/instruments/patience.h"
#include "sim/library/board.h"

extern "C" {
CURL* __real_curl_easy_init();
CURLcode __real_curl_easy_setopt(CURL* transfer, CURLoption option, ...);
CURLcode __real_curl_easy_perform(CURL* transfer);
void __real_curl_easy_cleanup(CURL* transfer);
CURLMcode __real_curl_multi_add_handle(CURLM* multi, CURL* transfer);
}

namespace sim {

std::function<void(CURL*)> on_transfer;

namespace {

constexpr std::size_t heard_bytes = 100;
constexpr long status_ok = 200;
constexpr long default_connect_time_out = 300; // libcurl's own, seconds

// What is known of a transfer beside what libcurl knows.
struct Transfer {
    std::string url;
    curl_write_callback take = nullptr; // the agent's, and its argument
    void* taker = nullptr;
    std::string heard;           // how the answer begins
    std::map<int, long> numbers; // that libcurl accepted for its options
};

class Transfers {
  public:
    Transfer& of(CURL* handle) {
        std::lock_guard guard(mutex_);
        return all_[handle];
    }
    void forget(CURL* handle) {
        std::lock_guard guard(mutex_);
        Transfer& ended = all_[handle];
        last_numbers_[ended.url] = ended.numbers;
        all_.erase(handle);
    }
    std::optional<long> last_number(const std::string& url, int option) {
        std::lock_guard guard(mutex_);
        auto found = last_numbers_[url].find(option);
        return found == last_numbers_[url].end() ? std::nullopt : std::optional(found->second);
    }

  private:
    std::mutex mutex_;
    std::map<CURL*, Transfer> all_;
    std::map<std::string, std::map<int, long>> last_numbers_; // by URL
};

Transfers& transfers() {
    static Transfers all;
    return all;
}

std::size_t hear(char* bytes, std::size_t size, std::size_t count, void* argument) {
    auto& transfer = *static_cast<Transfer*>(argument);
    const std::size_t room = heard_bytes - std::min(heard_bytes, transfer.heard.size());
    transfer.heard.append(bytes, std::min(room, size * count));
    return transfer.take(bytes, size, count, transfer.taker);
}

// --- What a failed check-in looks like to whoever watches.

// "https://HOST/path" without what is not the host.
std::string host_of(const std::string& url) {
    std::string_view rest = url;
    if (auto scheme = rest.find("://"); scheme != std::string_view::npos)
        rest.remove_prefix(scheme + 3);
    return std::string(rest.substr(0, rest.find('/')));
}

std::string on_one_line(std::string text) {
    for (char& c : text)
        if (std::iscntrl(static_cast<unsigned char>(c)))
            c = ' ';
    text.erase(0, text.find_first_not_of(' '));
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string reason_of_failure(CURL* handle, CURLcode result, const std::string& heard) {
    if (result != CURLE_OK)
        return std::string(curl_easy_strerror(result)) + " (" + std::to_string(result) + ")";
    long status = 0;
    curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &status);
    if (status == status_ok)
        return "";
    return "status " + std::to_string(status) + ": " + on_one_line(heard);
}

void tell_failed_check_in(CURL* handle, CURLcode result) {
    const Transfer& transfer = transfers().of(handle);
    if (!board().tell || !transfer.url.ends_with("/checkin"))
        return;
    std::string reason = reason_of_failure(handle, result, transfer.heard);
    if (!reason.empty())
        board().tell("check-in at " + host_of(transfer.url) + ": " + reason);
}

// --- What every transfer was, for whoever counts them.

template <class Number> Number measure(CURL* handle, CURLINFO what) {
    Number number = 0;
    curl_easy_getinfo(handle, what, &number);
    return number;
}

// Bytes are those of HTTP: heads and bodies, as they are before TLS.
std::string describe_transfer(CURL* handle, const Transfer& transfer) {
    const auto sent = measure<curl_off_t>(handle, CURLINFO_SIZE_UPLOAD_T) +
                      measure<long>(handle, CURLINFO_REQUEST_SIZE);
    const auto received = measure<curl_off_t>(handle, CURLINFO_SIZE_DOWNLOAD_T) +
                          measure<long>(handle, CURLINFO_HEADER_SIZE);
    const auto limit = transfer.numbers.find(CURLOPT_TIMEOUT);
    const nlohmann::ordered_json line = {
        {"url", transfer.url},
        {"status", measure<long>(handle, CURLINFO_RESPONSE_CODE)},
        {"milliseconds", measure<curl_off_t>(handle, CURLINFO_TOTAL_TIME_T) / 1000.0},
        {"handshakes", measure<curl_off_t>(handle, CURLINFO_APPCONNECT_TIME_T) > 0 ? 1 : 0},
        {"sent", sent},
        {"received", received},
        {"time_limit", limit == transfer.numbers.end() ? 0 : limit->second}};
    return line.dump();
}

void tell_transfer(CURL* handle) {
    const Transfer& transfer = transfers().of(handle);
    if (has_board() && board().tell_transfer && !transfer.url.empty())
        board().tell_transfer(describe_transfer(handle, transfer));
}

// --- Time.

void lose_patience(CURL* handle, const std::string& url) {
    auto milliseconds = patience().milliseconds(url);
    if (!milliseconds)
        return;
    __real_curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, *milliseconds);
    __real_curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT_MS, *milliseconds);
}

// Whether the connection, with TLS where it is under it, came about.
bool was_connected(CURL* handle) {
    curl_off_t begun = 0;
    curl_easy_getinfo(handle, CURLINFO_PRETRANSFER_TIME_T, &begun);
    return begun > 0;
}

// The seconds that the agent had given to a transfer that ran into its time-out.
double given_seconds(CURL* handle, const Transfer& transfer) {
    auto number = [&](CURLoption option, long otherwise) {
        auto found = transfer.numbers.find(option);
        return found == transfer.numbers.end() ? otherwise : found->second;
    };
    long whole = number(CURLOPT_TIMEOUT, 0);
    long connect = number(CURLOPT_CONNECTTIMEOUT, default_connect_time_out);
    return static_cast<double>(was_connected(handle) ? whole : std::min(whole, connect));
}

// --- The calls.

TransferWatcher watcher;

CURLcode perform(CURL* handle, const Transfer& transfer) {
    lose_patience(handle, transfer.url);
    CURLcode result = __real_curl_easy_perform(handle);
    if (result == CURLE_OPERATION_TIMEDOUT)
        patience().wait_out(transfer.url, given_seconds(handle, transfer), board().clock);
    return result;
}

CURLcode traced_transfer(CURL* handle) {
    Transfer& transfer = transfers().of(handle);
    transfer.heard.clear();
    if (watcher)
        watcher(transfer.url);
    auto fault = board().faults.hit(Edge::transfer, transfer.url);
    CURLcode result = fault ? static_cast<CURLcode>(*fault) : perform(handle, transfer);
    board().trace.add_call("transfer", static_cast<int>(result), transfer.url.c_str());
    tell_failed_check_in(handle, result);
    return result;
}

// A transfer that goes on beside others; how it ends is not known yet.
CURLMcode traced_listen(CURLM* multi, CURL* handle) {
    const std::string& url = transfers().of(handle).url;
    lose_patience(handle, url);
    CURLMcode result = board().faults.hit(Edge::transfer, url)
                           ? CURLM_OUT_OF_MEMORY
                           : __real_curl_multi_add_handle(multi, handle);
    board().trace.add_call("listen", static_cast<int>(result), url.c_str());
    return result;
}

CURLcode set_taker(CURL* handle, Transfer& transfer, curl_write_callback take) {
    transfer.take = take;
    __real_curl_easy_setopt(handle, CURLOPT_WRITEDATA, take ? &transfer : transfer.taker);
    return __real_curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, take ? hear : nullptr);
}

CURLcode set_taker_argument(CURL* handle, Transfer& transfer, void* taker) {
    transfer.taker = taker;
    return transfer.take ? CURLE_OK : __real_curl_easy_setopt(handle, CURLOPT_WRITEDATA, taker);
}

// The switch's libcurl was built with a bundle of authorities that is not on the switch: whoever
// does not say that he wants none gets no transfer over TLS.
CURL* start_transfer() {
    CURL* handle = __real_curl_easy_init();
    if (handle && has_board())
        __real_curl_easy_setopt(
            handle, CURLOPT_CAINFO, board().path("/etc/ssl/built_in_bundle.pem").c_str());
    if (handle && on_transfer)
        on_transfer(handle);
    return handle;
}

CURLcode set_pointer(CURL* handle, CURLoption option, void* value) {
    Transfer& transfer = transfers().of(handle);
    switch (option) {
    case CURLOPT_URL:
        transfer.url = value ? static_cast<const char*>(value) : "";
        break;
    case CURLOPT_WRITEFUNCTION:
        return set_taker(handle, transfer, reinterpret_cast<curl_write_callback>(value));
    case CURLOPT_WRITEDATA:
        return set_taker_argument(handle, transfer, value);
    case CURLOPT_CAPATH:
        return __real_curl_easy_setopt(
            handle, option, board().path(static_cast<const char*>(value)).c_str());
    default:
        break;
    }
    return __real_curl_easy_setopt(handle, option, value);
}

CURLcode set_number(CURL* handle, CURLoption option, long value) {
    CURLcode result = __real_curl_easy_setopt(handle, option, value);
    if (result == CURLE_OK)
        transfers().of(handle).numbers[option] = value;
    return result;
}

CURLcode set_option(CURL* handle, CURLoption option, va_list arguments) {
    if (option >= CURLOPTTYPE_OFF_T && option < CURLOPTTYPE_BLOB)
        return __real_curl_easy_setopt(handle, option, va_arg(arguments, curl_off_t));
    if (option < CURLOPTTYPE_OBJECTPOINT)
        return set_number(handle, option, va_arg(arguments, long));
    return set_pointer(handle, option, va_arg(arguments, void*));
}

} // namespace

void watch_transfers(TransferWatcher wanted) { watcher = std::move(wanted); }

std::optional<long> transfer_option(const std::string& url, int option) {
    return transfers().last_number(url, option);
}

} // namespace sim

extern "C" {

// The option is passed as the integer that va_start can stand on.
CURLcode __wrap_curl_easy_setopt(CURL* transfer, unsigned option, ...) {
    va_list arguments;
    va_start(arguments, option);
    CURLcode result = sim::set_option(transfer, static_cast<CURLoption>(option), arguments);
    va_end(arguments);
    return result;
}

CURL* __wrap_curl_easy_init() { return sim::start_transfer(); }

CURLcode __wrap_curl_easy_perform(CURL* transfer) { return sim::traced_transfer(transfer); }

void __wrap_curl_easy_cleanup(CURL* transfer) {
    sim::tell_transfer(transfer);
    __real_curl_easy_cleanup(transfer);
    sim::transfers().forget(transfer);
}

CURLMcode __wrap_curl_multi_add_handle(CURLM* multi, CURL* transfer) {
    return sim::traced_listen(multi, transfer);
}
}
