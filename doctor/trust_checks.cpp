// Trust: the directory of authorities, and the certificates that the hosts show.
//
// Only libcurl is asked, so this holds for any TLS library under it. Its error does not tell an
// expired certificate from an unknown authority with all of them; so the certificate is looked at
// once more without verification, its dates are compared with the time, and last it is verified
// without its name.
#include "doctor/trust_checks.h"

#include <ctype.h>
#include <curl/curl.h>
#include <dirent.h>
#include <stdio.h>
#include <string.h>
#include <strings.h>
#include <time.h>

#include "base/state.h"
#include "doctor/clock.h"
#include "transport/transfer_options.h"

// --- The directory.

namespace {

enum { HAS_AUTHORITIES, NO_DIRECTORY, IS_EMPTY, NOT_HASHED };

const char trust_path[] = "/etc/ssl/certs/";

const Finding trust_table[] = {
    {"present", VERDICT_OK, "there are authorities to trust", ""},
    {"no-directory", VERDICT_WRONG, "the directory of trusted authorities cannot be read",
     "make /etc/ssl/certs and put the cloud's authority there"},
    {"empty", VERDICT_WRONG, "no authority is trusted",
     "put the certificate of the cloud's authority into /etc/ssl/certs, under its hashed name"},
    {"not-hashed", VERDICT_WRONG,
     "there are files, but none has a hashed name, and only those are looked at",
     "run `openssl rehash` over the directory, or link each file as HASH.0"},
};

// "1a2b3c4d.0", as `openssl rehash` names them.
bool is_hashed_name(const char* name) {
    const size_t digits = 8;
    return strspn(name, "0123456789abcdef") == digits && name[digits] == '.' &&
           isdigit(static_cast<unsigned char>(name[digits + 1]));
}

struct DirectoryCount {
    int hashed;
    int others;
};

DirectoryCount count_entries(DIR* directory) {
    DirectoryCount count = {};
    while (const dirent* entry = readdir(directory)) {
        if (entry->d_name[0] == '.')
            continue;
        bool hashed = is_hashed_name(entry->d_name);
        count.hashed += hashed;
        count.others += !hashed;
    }
    return count;
}

} // namespace

const Findings trust_findings(trust_table);

int check_trust(char* detail) {
    describe(detail, "%s", trust_path);
    DIR* directory = opendir(trust_path);
    if (!directory)
        return NO_DIRECTORY;
    DirectoryCount count = count_entries(directory);
    closedir(directory);
    describe_more(detail, ": %d hashed names, %d others", count.hashed, count.others);
    if (count.hashed)
        return HAS_AUTHORITIES;
    return count.others ? NOT_HASHED : IS_EMPTY;
}

// --- Certificates.

namespace {

enum {
    IS_VERIFIED,
    ENDS_SOON,
    HAS_EXPIRED,
    HAS_EXPIRED_UNSURE,
    NOT_YET_VALID,
    NOT_YET_VALID_UNSURE,
    UNKNOWN_AUTHORITY,
    WRONG_NAME,
    BROKEN_OFF,
};

const Finding certificate_table[] = {
    {"verified", VERDICT_OK, "the certificate is trusted, valid and the host's own", ""},
    {"ends-soon", VERDICT_WARNING, "the certificate ends within two weeks",
     "have whoever runs the cloud renew it"},
    {"expired", VERDICT_WRONG, "the certificate has expired, by the cloud's time too",
     "have whoever runs the cloud renew it"},
    {"expired-unsure", VERDICT_WRONG,
     "the certificate has expired by the switch's clock; the evidence ends here: without the "
     "cloud's "
     "time it is open whether certificate or clock is wrong",
     "compare the switch's clock with a good one; then renew the certificate or set the clock"},
    {"not-yet", VERDICT_WRONG, "the certificate is not valid yet, by the cloud's time either",
     "have whoever runs the cloud look at it"},
    {"not-yet-unsure", VERDICT_WRONG,
     "the certificate is not valid yet by the switch's clock; the evidence ends here: without the "
     "cloud's time it is open whether certificate or clock is wrong",
     "compare the switch's clock with a good one"},
    {"unknown-authority", VERDICT_WRONG, "no trusted authority stands behind the certificate",
     "put the certificate of its issuer's root into /etc/ssl/certs under its hashed name; or "
     "somebody "
     "stands between switch and cloud"},
    {"wrong-name", VERDICT_WRONG, "the certificate is for another host",
     "look whether the stored host is the one that the certificate names; or somebody stands "
     "between "
     "switch and cloud"},
    {"broken-off", VERDICT_WRONG,
     "the TLS handshake breaks off; the evidence ends here: the port may speak no TLS, none that "
     "the "
     "switch knows, or something between drops it",
     "try `openssl s_client -connect HOST:PORT` from another machine"},
};

enum { HANDSHAKE_TIMEOUT = 20, SOON = 14 * 24 * 3600 }; // seconds

// The host's own certificate, the first of the chain.
struct Certificate {
    char subject[128];
    char issuer[128];
    time_t start;
    time_t end;
};

struct Handshake {
    bool verify_chain;
    bool verify_name;
    CURLcode code;
    char error[CURL_ERROR_SIZE];
    Certificate certificate;
};

const char* field_of(const curl_slist* fields, const char* name) {
    size_t length = strlen(name);
    for (; fields; fields = fields->next)
        if (strncasecmp(fields->data, name, length) == 0 && fields->data[length] == ':')
            return fields->data + length + 1;
    return "";
}

// libcurl's own reader of dates takes the forms of every TLS library.
void read_certificate(CURL* curl, Certificate* certificate) {
    curl_certinfo* chain = nullptr;
    if (curl_easy_getinfo(curl, CURLINFO_CERTINFO, &chain) != CURLE_OK || !chain ||
        chain->num_of_certs < 1)
        return;
    const curl_slist* fields = chain->certinfo[0];
    snprintf(certificate->subject, sizeof certificate->subject, "%s", field_of(fields, "Subject"));
    snprintf(certificate->issuer, sizeof certificate->issuer, "%s", field_of(fields, "Issuer"));
    certificate->start = curl_getdate(field_of(fields, "Start date"), nullptr);
    certificate->end = curl_getdate(field_of(fields, "Expire date"), nullptr);
}

void shake_hands(const char* host, Handshake* handshake) {
    CURL* curl = curl_easy_init();
    if (!curl) {
        handshake->code = CURLE_OUT_OF_MEMORY;
        return;
    }
    char url[HOST_SIZE + sizeof "https://"];
    snprintf(url, sizeof url, "https://%s", host);
    set_common_options(curl, nullptr);
    set_authorities(curl);
    curl_easy_setopt(curl, CURLOPT_URL, url);
    curl_easy_setopt(curl, CURLOPT_SSL_VERIFYPEER, handshake->verify_chain ? 1L : 0L);
    curl_easy_setopt(curl, CURLOPT_SSL_VERIFYHOST, handshake->verify_name ? 2L : 0L);
    curl_easy_setopt(curl, CURLOPT_CERTINFO, 1L);
    curl_easy_setopt(curl, CURLOPT_CONNECT_ONLY, 1L);
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, handshake->error);
    curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT, static_cast<long>(HANDSHAKE_TIMEOUT));
    handshake->code = curl_easy_perform(curl);
    read_certificate(curl, &handshake->certificate);
    curl_easy_cleanup(curl);
}

bool is_valid_at(const Certificate& certificate, time_t when) {
    return certificate.start <= when && when <= certificate.end;
}

void describe_certificate(char* detail, const Certificate& certificate) {
    char start[DATE_SIZE];
    char end[DATE_SIZE];
    format_date(start, certificate.start);
    format_date(end, certificate.end);
    describe(
        detail, "%s, issued by %s, valid from %s to %s", certificate.subject, certificate.issuer,
        start, end);
}

// The certificate is out of its time by the switch's clock.
int judge_dates(const Certificate& certificate, time_t now, char* detail) {
    char date[DATE_SIZE];
    format_date(date, now);
    describe_more(detail, "; the switch's clock says %s", date);
    bool expired = now > certificate.end;
    if (!cloud_time.is_known)
        return expired ? HAS_EXPIRED_UNSURE : NOT_YET_VALID_UNSURE;
    return expired ? HAS_EXPIRED : NOT_YET_VALID;
}

// What a handshake without verification shows of a host that failed with it.
int judge_failure(const char* host, char* detail) {
    Handshake unverified = {false, false, CURLE_OK, "", {}};
    shake_hands(host, &unverified);
    if (unverified.code != CURLE_OK) {
        describe(detail, "%s: %s", host, unverified.error);
        return BROKEN_OFF;
    }
    describe_certificate(detail, unverified.certificate);
    time_t now = time(nullptr);
    if (unverified.certificate.end > 0 && !is_valid_at(unverified.certificate, now))
        return judge_dates(unverified.certificate, now, detail);
    Handshake unnamed = {true, false, CURLE_OK, "", {}};
    shake_hands(host, &unnamed);
    return unnamed.code == CURLE_OK ? WRONG_NAME : UNKNOWN_AUTHORITY;
}

int check_certificate(const char* host, char* detail) {
    Handshake verified = {true, true, CURLE_OK, "", {}};
    shake_hands(host, &verified);
    if (verified.code == CURLE_PEER_FAILED_VERIFICATION)
        return judge_failure(host, detail);
    if (verified.code != CURLE_OK) {
        describe(detail, "%s: %s", host, verified.error);
        return BROKEN_OFF;
    }
    describe_certificate(detail, verified.certificate);
    bool soon = verified.certificate.end > 0 && verified.certificate.end - time(nullptr) < SOON;
    return soon ? ENDS_SOON : IS_VERIFIED;
}

} // namespace

const Findings certificate_findings(certificate_table);

int check_checkin_certificate(char* detail) { return check_certificate(CheckinHost, detail); }
int check_fallback_certificate(char* detail) { return check_certificate(fallback_host, detail); }
