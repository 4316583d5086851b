// Fetching an image. The platform library's own transfers are real ones:
// they are not the agent's, so neither trace nor fault plan knows them.
#include "sim/library/firmware_download.h"

#include <curl/curl.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>

#include "sim/instruments/codes.h"
#include "sim/instruments/patience.h"
#include "sim/library/board.h"
#include "sim/library/firmware_image.h"

extern "C" {
CURL* __real_curl_easy_init();
void __real_curl_easy_cleanup(CURL* transfer);
CURLcode __real_curl_easy_setopt(CURL* transfer, CURLoption option, ...);
CURLcode __real_curl_easy_perform(CURL* transfer);
}

namespace sim {

namespace {

constexpr long longest_download = 120; // seconds

std::size_t receive(char* bytes, std::size_t, std::size_t count, void* content) {
    auto& text = *static_cast<std::string*>(content);
    if (text.size() + count > largest_image)
        return 0;
    text.append(bytes, count);
    return count;
}

int fetch_from_network(const std::string& url, std::string& content) {
    std::unique_ptr<CURL, decltype(&__real_curl_easy_cleanup)> transfer(
        __real_curl_easy_init(), __real_curl_easy_cleanup);
    if (!transfer)
        return code_failed;
    std::string certificates = board().path("/etc/ssl/certs").string();
    auto set = [&](CURLoption option, auto value) {
        __real_curl_easy_setopt(transfer.get(), option, value);
    };
    set(CURLOPT_URL, url.c_str());
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_CAINFO, static_cast<char*>(nullptr));
    set(CURLOPT_CAPATH, certificates.c_str());
    set(CURLOPT_PROXY, "");
    set(CURLOPT_FAILONERROR, 1L);
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_TIMEOUT, longest_download);
    if (const auto milliseconds = patience().milliseconds(url))
        set(CURLOPT_TIMEOUT_MS, *milliseconds);
    set(CURLOPT_WRITEFUNCTION, receive);
    set(CURLOPT_WRITEDATA, static_cast<void*>(&content));
    const CURLcode result = __real_curl_easy_perform(transfer.get());
    if (result == CURLE_OPERATION_TIMEDOUT)
        patience().wait_out(url, longest_download, board().clock);
    return result == CURLE_OK ? code_ok : code_failed;
}

// No path leads out of the board.
int fetch_from_board(const std::string& path, std::string& content) {
    std::ifstream in(
        board().path(std::filesystem::path(path).lexically_normal().string()), std::ios::binary);
    if (!in)
        return code_failed;
    content.assign(std::istreambuf_iterator<char>(in), {});
    return content.size() <= largest_image ? code_ok : code_failed;
}

} // namespace

int fetch(const std::string& url, std::string& content) {
    constexpr std::string_view file_scheme = "file://";
    content.clear();
    if (url.starts_with("http://") || url.starts_with("https://"))
        return fetch_from_network(url, content);
    std::string path = url.starts_with(file_scheme) ? url.substr(file_scheme.size()) : url;
    return path.starts_with('/') ? fetch_from_board(path, content) : int{code_bad_value};
}

} // namespace sim
