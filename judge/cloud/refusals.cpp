// What a bad switch, or somebody who is none, sends, and a cloud must refuse: rightly made and
// rightly signed but for one thing.
#include <algorithm>

#include "judge/cloud/families.h"

namespace judge::cloud {

namespace {

struct Bad {
    const char* code; // of the page's table of rejections
    const char* name;
    const char* words; // what is wrong
    void (*spoil)(Checkin& checkin);
};

// --- Spoiling.

// Header lines as Checkin::lines() has them, without the request line.
enum Line { length_line = 2, type_line, authorization_line, signature_line };

template <Line line> void drop(Checkin& checkin) {
    checkin.rearrange = [](std::vector<std::string>& lines) { lines.erase(lines.begin() + line); };
}

template <Line line> void repeat(Checkin& checkin) {
    checkin.rearrange = [](std::vector<std::string>& lines) {
        const std::string again = lines[line];
        lines.insert(lines.begin() + line, again);
    };
}

template <Line line> void swap_with_next(Checkin& checkin) {
    checkin.rearrange = [](std::vector<std::string>& lines) {
        std::swap(lines[line], lines[line + 1]);
    };
}

void add(Checkin& checkin, const std::string& line) {
    checkin.rearrange = [line](std::vector<std::string>& lines) { lines.push_back(line); };
}

void replace(Checkin& checkin, Line at, const std::string& line) {
    checkin.rearrange = [=](std::vector<std::string>& lines) { lines[at] = line; };
}

std::string changed_case(std::string text, int (*change)(int)) {
    std::transform(text.begin(), text.end(), text.begin(), [&](unsigned char c) {
        return static_cast<char>(change(c));
    });
    return text;
}

std::string without(std::string text, char c) {
    std::erase(text, c);
    return text;
}

std::string encoded(std::string text) {
    const std::size_t colon = text.find(':');
    return text.replace(colon, 1, "%3A");
}

void set_mac(Checkin& checkin, const std::string& mac) { checkin.path = checkin_path(mac); }

// A locally administered address that no switch has.
constexpr const char* nobody = "02:00:00:FF:FF:01";

std::string chunked(const std::string& body) {
    char size[32];
    std::snprintf(size, sizeof size, "%zx", body.size());
    return std::string(size) + "\r\n" + body + "\r\n0\r\n\r\n";
}

void sign_without(Checkin& checkin, bool authorization, bool path, bool body) {
    checkin.signature = sign(
        checkin.account.secret, (authorization ? checkin.authorization_value() : "") +
                                    (path ? checkin.path : "") + (body ? checkin.body : ""));
}

std::string pair(const Checkin& c, const std::string& timestamp, const std::string& nonce) {
    return "key=" + c.account.key + ",timestamp=" + timestamp + ",nonce=" + nonce;
}

constexpr std::int64_t day = 24 * 60 * 60;

const Bad bads[] = {
    {"malformed", "no HTTP at all", "four words and two line ends instead of a request",
     [](Checkin& c) { c.instead = "this is no request\r\n\r\n"; }},
    {"malformed", "a header on two lines", "a header that is continued on a second line",
     [](Checkin& c) { add(c, "X-Folded: one\r\n two: three"); }},
    {"scheme", "plain HTTP", "over plain HTTP", [](Checkin& c) { c.plain = true; }},
    {"method", "PUT", "the method is PUT", [](Checkin& c) { c.method = "PUT"; }},
    {"method", "GET", "the method is GET", [](Checkin& c) { c.method = "GET"; }},
    {"path", "another path", "the path ends in /check",
     [](Checkin& c) { c.path.resize(c.path.size() - 2); }},
    {"path", "a query", "a query behind the path", [](Checkin& c) { c.path += "?a=1"; }},
    {"path", "a MAC in lower case", "the MAC is in lower case",
     [](Checkin& c) { set_mac(c, changed_case(c.account.mac, std::tolower)); }},
    {"path", "a MAC without colons", "the MAC has no colons",
     [](Checkin& c) { set_mac(c, without(c.account.mac, ':')); }},
    {"path", "an encoded MAC", "a colon of the MAC is encoded",
     [](Checkin& c) { set_mac(c, encoded(c.account.mac)); }},
    {"encoding", "a chunked body", "a body in chunks, beside Content-Length",
     [](Checkin& c) {
         add(c, "Transfer-Encoding: chunked");
         c.encode = chunked;
     }},
    {"encoding", "an encoded body", "a Content-Encoding",
     [](Checkin& c) { add(c, "Content-Encoding: identity"); }},
    {"header-missing", "no Content-Length", "no Content-Length", drop<length_line>},
    {"header-missing", "no Content-Type", "no Content-Type", drop<type_line>},
    {"header-missing", "no Authorization", "no Authorization", drop<authorization_line>},
    {"header-missing", "no Signature", "no Signature", drop<signature_line>},
    {"header-duplicate", "Content-Length twice", "Content-Length twice", repeat<length_line>},
    {"header-duplicate", "Content-Type twice", "Content-Type twice", repeat<type_line>},
    {"header-duplicate", "Authorization twice", "Authorization twice", repeat<authorization_line>},
    {"header-duplicate", "Signature twice", "Signature twice", repeat<signature_line>},
    {"header-order", "Content-Type first", "Content-Type before Content-Length",
     swap_with_next<length_line>},
    {"header-order", "Authorization before Content-Type", "Authorization before Content-Type",
     swap_with_next<type_line>},
    {"header-order", "Signature before Authorization", "Signature before Authorization",
     swap_with_next<authorization_line>},
    {"content-length", "a length that is no number", "Content-Length: many",
     [](Checkin& c) { replace(c, length_line, "Content-Length: many"); }},
    {"content-length", "a length with a sign", "a plus before the length",
     [](Checkin& c) {
         replace(c, length_line, "Content-Length: +" + std::to_string(c.body.size()));
     }},
    {"content-length", "a body shorter than its length", "ends 7 bytes before its Content-Length",
     [](Checkin& c) {
         replace(c, length_line, "Content-Length: " + std::to_string(c.body.size() + 7));
         c.cut = true;
     }},
    {"content-type", "a form", "the type of a form",
     [](Checkin& c) { replace(c, type_line, "Content-Type: application/x-www-form-urlencoded"); }},
    {"content-type", "another text", "the type text/plain",
     [](Checkin& c) { replace(c, type_line, "Content-Type: text/plain"); }},
    {"authorization", "another scheme", "Authorization: Basic",
     [](Checkin& c) { c.authorization = "Basic " + std::string(24, 'a'); }},
    {"authorization", "no nonce", "an Authorization without a nonce",
     [](Checkin& c) {
         c.authorization = "key=" + c.account.key + ",timestamp=" + std::to_string(c.timestamp);
     }},
    {"authorization", "no timestamp", "an Authorization without a timestamp",
     [](Checkin& c) { c.authorization = "key=" + c.account.key + ",nonce=" + c.nonce; }},
    {"authorization", "parts in another order", "the timestamp before the key",
     [](Checkin& c) {
         c.authorization = "timestamp=" + std::to_string(c.timestamp) + ",key=" + c.account.key +
                           ",nonce=" + c.nonce;
     }},
    {"authorization", "a timestamp that is no number", "timestamp=now",
     [](Checkin& c) { c.authorization = pair(c, "now", c.nonce); }},
    {"authorization", "a nonce in upper case", "the nonce is in upper case",
     [](Checkin& c) {
         c.nonce.back() = 'a';
         c.nonce = changed_case(c.nonce, std::toupper);
     }},
    {"authorization", "a short nonce", "the nonce has 31 digits",
     [](Checkin& c) { c.nonce.pop_back(); }},
    {"unknown-switch", "an unknown switch", "a MAC that nobody registered",
     [](Checkin& c) { set_mac(c, nobody); }},
    {"key", "another key", "a key that is not the switch's",
     [](Checkin& c) { c.account.key += "x"; }},
    {"key", "no key", "an empty key", [](Checkin& c) { c.account.key.clear(); }},
    {"timestamp", "an old timestamp", "a timestamp of a day ago",
     [](Checkin& c) { c.timestamp -= day; }},
    {"timestamp", "a future timestamp", "a timestamp of a day ahead",
     [](Checkin& c) { c.timestamp += day; }},
    {"timestamp", "the timestamp of a switch without a clock", "the timestamp 0",
     [](Checkin& c) { c.timestamp = 0; }},
    {"signature", "another secret", "signed with another secret",
     [](Checkin& c) { c.account.secret += "x"; }},
    {"signature", "an empty secret", "signed with an empty secret",
     [](Checkin& c) { c.account.secret.clear(); }},
    {"signature", "a changed body", "a letter of the body is changed after signing",
     [](Checkin& c) {
         c.sent_body = c.body;
         c.sent_body->replace(c.body.find("config_seqno"), 1, "C");
     }},
    {"signature", "the signature of another path", "signed for another switch's path",
     [](Checkin& c) { c.signed_path = checkin_path(nobody); }},
    {"signature", "the signature of another time", "the timestamp is changed after signing",
     [](Checkin& c) { c.sent_authorization = pair(c, std::to_string(c.timestamp - 1), c.nonce); }},
    {"signature", "the signature of another nonce", "the nonce is changed after signing",
     [](Checkin& c) {
         c.sent_authorization = pair(c, std::to_string(c.timestamp), fresh_nonce());
     }},
    {"signature", "a signature without the authorization", "signed are path and body alone",
     [](Checkin& c) { sign_without(c, false, true, true); }},
    {"signature", "a signature without the path", "signed are Authorization and body alone",
     [](Checkin& c) { sign_without(c, true, false, true); }},
    {"signature", "a signature without the body", "signed are Authorization and path alone",
     [](Checkin& c) { sign_without(c, true, true, false); }},
    {"signature", "a signature in upper case", "the right signature in upper case",
     [](Checkin& c) {
         sign_without(c, true, true, true);
         c.signature = changed_case(*c.signature, std::toupper);
     }},
    {"signature", "the beginning of a signature", "the right signature's first 32 digits",
     [](Checkin& c) {
         sign_without(c, true, true, true);
         c.signature->resize(32);
     }},
    {"signature", "an empty signature", "an empty Signature", [](Checkin& c) { c.signature = ""; }},
    {"body", "a body that is no JSON", "a rightly signed word",
     [](Checkin& c) { c.body = "report"; }},
    {"body", "a list for a body", "a rightly signed list", [](Checkin& c) { c.body = "[]"; }},
    {"body", "no body", "a rightly signed body of no bytes", [](Checkin& c) { c.body.clear(); }},
};

void judge_bad(
    Session& session, const char* code, const char* name, const std::string& words,
    const std::function<void(Checkin&)>& spoil) {
    Check check(
        session, "refusals", name, Level::must, "1.6, " + std::string(code) + ": it is refused");
    Checkin checkin = session.good();
    const std::string good = checkin.text();
    spoil(checkin);
    if (checkin.text() == good && !checkin.plain)
        return check.skip("with this account it is the same as a good one");
    check.sent("a check-in, good but for this: " + words, checkin);
    expect_refused(check, session.send(checkin));
}

// Just outside of a window that the cloud has told.
void judge_window(Session& session) {
    const std::int64_t outside = session.options.window + 10;
    judge_bad(
        session, "timestamp", "a timestamp just outside the window, old",
        "a timestamp 10 s outside the window", [&](Checkin& c) { c.timestamp -= outside; });
    judge_bad(
        session, "timestamp", "a timestamp just outside the window, new",
        "a timestamp 10 s outside the window", [&](Checkin& c) { c.timestamp += outside; });
}

// Who can make a cloud lock a switch out need not know its secret.
void judge_afterwards(Session& session) {
    Check check(
        session, "refusals", "a good check-in after all of these", Level::must,
        "1.6: what was refused does not lock the switch out");
    const Checkin checkin = session.good();
    check.sent("a report", checkin);
    expect_served(check, session.send(checkin));
}

} // namespace

void judge_refusals(Session& session) {
    for (const Bad& bad : bads)
        if (!interrupted)
            judge_bad(session, bad.code, bad.name, bad.words, bad.spoil);
    if (session.options.window)
        judge_window(session);
    judge_afterwards(session);
}

} // namespace judge::cloud
