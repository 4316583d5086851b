// The dump of a transfer's statistics.
#include "transport/transfer_info.h"

#include <memory>
#include <regex>

#include "on_wire.h"
#include "transport/transfer_options.h"

namespace {

using Transfer = std::unique_ptr<CURL, decltype(&curl_easy_cleanup)>;

class TransferInfo : public OnWire {
  protected:
    // Runs a GET and dumps it.
    void dump(const std::string& url) {
        Transfer transfer(curl_easy_init(), curl_easy_cleanup);
        api_reply discard = {REPLY_DISCARD, {nullptr}, 0};
        curl_easy_setopt(transfer.get(), CURLOPT_URL, url.c_str());
        set_common_options(transfer.get(), &discard);
        curl_easy_perform(transfer.get());
        EXPECT_EQ(get_infos(transfer.get()), 0);
    }
};

// Lines against the patterns of a whole dump.
void expect_lines(const Lines& lines, const Lines& patterns) {
    EXPECT_EQ(lines.size(), patterns.size());
    for (std::size_t i = 0; i < lines.size() && i < patterns.size(); ++i)
        EXPECT_TRUE(std::regex_match(lines[i], std::regex(patterns[i])))
            << lines[i] << " against " << patterns[i];
}

} // namespace

TEST_F(TransferInfo, every_item_of_a_finished_transfer_in_order) {
    cloud.answer(
        {.body = "12345", .headers = {"Content-Type: text/x-test", "Location: http://other/"}});
    debug_flag = 1;
    dump("http://" + cloud.host() + "/p");
    expect_lines(
        console(), {
                       "CURLINFO_EFFECTIVE_URL http://127\\.0\\.0\\.1:\\d+/p",
                       "CURLINFO_RESPONSE_CODE 200",
                       "CURLINFO_HTTP_CONNECTCODE 000",
                       "CURLINFO_HEADER_SIZE \\d+",
                       "CURLINFO_REQUEST_SIZE \\d+",
                       "CURLINFO_NUM_CONNECTS1",
                       "CURLINFO_REDIRECT_COUNT0",
                       "CURLINFO_REDIRECT_TIME 0\\.000",
                       "CURLINFO_TOTAL_TIME \\d+\\.\\d{3}",
                       "CURLINFO_NAMELOOKUP_TIME \\d+\\.\\d{3}",
                       "CURLINFO_CONNECT_TIME \\d+\\.\\d{3}",
                       "CURLINFO_APPCONNECT_TIME 0\\.000",
                       "CURLINFO_PRETRANSFER_TIME \\d+\\.\\d{3}",
                       "CURLINFO_STARTTRANSFER_TIME \\d+\\.\\d{3}",
                       "CURLINFO_SIZE_UPLOAD 0",
                       "CURLINFO_SIZE_DOWNLOAD 5",
                       "CURLINFO_SPEED_DOWNLOAD \\d+\\.\\d{3}",
                       "CURLINFO_SPEED_UPLOAD 0\\.000",
                       "CURLINFO_CONTENT_TYPE text/x-test",
                       "CURLINFO_SSL_VERIFYRESULT \\d+",
                       "CURLINFO_PRIMARY_IP 127\\.0\\.0\\.1",
                       "CURLINFO_PRIMARY_PORT " + std::to_string(cloud.port()),
                       "CURLINFO_LOCAL_IP 127\\.0\\.0\\.1",
                       "CURLINFO_LOCAL_PORT [1-9]\\d*",
                   });
}

TEST_F(TransferInfo, redirect_that_was_not_followed_is_shown) {
    HttpAnswer moved;
    moved.status = 302;
    moved.headers = {"Location: http://other.example/"};
    cloud.answer(moved);
    debug_flag = 1;
    dump("http://" + cloud.host() + "/p");
    Lines lines = console();
    EXPECT_NE(
        std::find(lines.begin(), lines.end(), "CURLINFO_REDIRECT_URL http://other.example/"),
        lines.end());
}

TEST_F(TransferInfo, transfer_that_never_connected_has_code_000_and_lacks_null_texts) {
    std::string nobody;
    {
        HttpStub gone;
        nobody = gone.host();
    }
    debug_flag = 1;
    dump("http://" + nobody + "/p");
    std::string text = raw_console();
    for (const char* line : {"RESPONSE_CODE 000\n", "HEADER_SIZE 0\n", "REQUEST_SIZE 0\n"})
        EXPECT_NE(text.find(std::string("CURLINFO_") + line), std::string::npos) << line;
    for (const char* absent : {"CONTENT_TYPE", "FTP_ENTRY_PATH", "REDIRECT_URL"})
        EXPECT_EQ(text.find(absent), std::string::npos) << absent;
}

TEST_F(TransferInfo, nothing_is_written_without_the_debug_flag) {
    cloud.answer({});
    dump("http://" + cloud.host() + "/p");
    EXPECT_EQ(raw_console(), "");
}
