// The statistics are a table of what libcurl is asked and how the answer is shown.
#include "transport/transfer_info.h"

#include "base/debug.h"

namespace {

struct TransferItem {
    CURLINFO info;     // its type is part of the number
    const char* label; // with the blank before the value; two lines are known without one
    int least_digits;  // of an integer
    int decimals;      // of a number with a point
};

// Newer libcurl prefers integer forms of sizes and speeds, which a switch's older one lacks.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
const TransferItem items[] = {
    {CURLINFO_EFFECTIVE_URL, "CURLINFO_EFFECTIVE_URL ", 0, 0},
    {CURLINFO_RESPONSE_CODE, "CURLINFO_RESPONSE_CODE ", 3, 0},
    {CURLINFO_HTTP_CONNECTCODE, "CURLINFO_HTTP_CONNECTCODE ", 3, 0},
    {CURLINFO_HEADER_SIZE, "CURLINFO_HEADER_SIZE ", 1, 0},
    {CURLINFO_REQUEST_SIZE, "CURLINFO_REQUEST_SIZE ", 1, 0},
    {CURLINFO_NUM_CONNECTS, "CURLINFO_NUM_CONNECTS", 1, 0},
    {CURLINFO_REDIRECT_COUNT, "CURLINFO_REDIRECT_COUNT", 1, 0},
    {CURLINFO_REDIRECT_TIME, "CURLINFO_REDIRECT_TIME ", 0, 3},
    {CURLINFO_TOTAL_TIME, "CURLINFO_TOTAL_TIME ", 0, 3},
    {CURLINFO_NAMELOOKUP_TIME, "CURLINFO_NAMELOOKUP_TIME ", 0, 3},
    {CURLINFO_CONNECT_TIME, "CURLINFO_CONNECT_TIME ", 0, 3},
    {CURLINFO_APPCONNECT_TIME, "CURLINFO_APPCONNECT_TIME ", 0, 3},
    {CURLINFO_PRETRANSFER_TIME, "CURLINFO_PRETRANSFER_TIME ", 0, 3},
    {CURLINFO_STARTTRANSFER_TIME, "CURLINFO_STARTTRANSFER_TIME ", 0, 3},
    {CURLINFO_SIZE_UPLOAD, "CURLINFO_SIZE_UPLOAD ", 0, 0},
    {CURLINFO_SIZE_DOWNLOAD, "CURLINFO_SIZE_DOWNLOAD ", 0, 0},
    {CURLINFO_SPEED_DOWNLOAD, "CURLINFO_SPEED_DOWNLOAD ", 0, 3},
    {CURLINFO_SPEED_UPLOAD, "CURLINFO_SPEED_UPLOAD ", 0, 3},
    {CURLINFO_CONTENT_TYPE, "CURLINFO_CONTENT_TYPE ", 0, 0},
    {CURLINFO_FTP_ENTRY_PATH, "CURLINFO_FTP_ENTRY_PATH ", 0, 0},
    {CURLINFO_REDIRECT_URL, "CURLINFO_REDIRECT_URL ", 0, 0},
    {CURLINFO_SSL_VERIFYRESULT, "CURLINFO_SSL_VERIFYRESULT ", 1, 0},
    {CURLINFO_PRIMARY_IP, "CURLINFO_PRIMARY_IP ", 0, 0},
    {CURLINFO_PRIMARY_PORT, "CURLINFO_PRIMARY_PORT ", 1, 0},
    {CURLINFO_LOCAL_IP, "CURLINFO_LOCAL_IP ", 0, 0},
    {CURLINFO_LOCAL_PORT, "CURLINFO_LOCAL_PORT ", 1, 0},
};
#pragma GCC diagnostic pop

void print_text(CURL* curl, const TransferItem& item) {
    const char* text = nullptr;
    if (curl_easy_getinfo(curl, item.info, &text) == CURLE_OK && text)
        debug_print("%s%s\n", item.label, text);
}

void print_integer(CURL* curl, const TransferItem& item) {
    long value = 0;
    if (curl_easy_getinfo(curl, item.info, &value) == CURLE_OK)
        debug_print("%s%0*ld\n", item.label, item.least_digits, value);
}

void print_number(CURL* curl, const TransferItem& item) {
    double value = 0;
    if (curl_easy_getinfo(curl, item.info, &value) == CURLE_OK)
        debug_print("%s%.*f\n", item.label, item.decimals, value);
}

void print_item(CURL* curl, const TransferItem& item) {
    switch (item.info & CURLINFO_TYPEMASK) {
    case CURLINFO_STRING:
        return print_text(curl, item);
    case CURLINFO_LONG:
        return print_integer(curl, item);
    default:
        return print_number(curl, item);
    }
}

} // namespace

int get_infos(CURL* curl) {
    for (const TransferItem& item : items)
        print_item(curl, item);
    return 0;
}
