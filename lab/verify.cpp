// The checks of a check-in, in the order in which they are made. The nonce comes last, so that only
// a request that is otherwise good can use one up.
#include "lab/verify.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

#include "lab/mac.h"
#include "lab/request_head.h"
#include "lab/signature.h"

namespace lab {

namespace {

using Finding = std::optional<Rejection>;

struct Examination {
    const Call& call;
    const Examiner& examiner;
    RequestHead head = {};
    std::string mac = {};
    Account account = {};
    std::string authorization_text = {};
    Authorization authorization = {};
};

constexpr std::array<std::string_view, 4> required_headers = {
    "Content-Length", "Content-Type", "Authorization", "Signature"};

Finding reject(std::string code, std::string reason) {
    return Rejection{std::move(code), std::move(reason)};
}

std::ptrdiff_t count_header(const Examination& e, std::string_view name) {
    return std::ranges::count_if(
        e.head.lines, [&](const HeaderLine& line) { return same_name(line.name, name); });
}

std::vector<HeaderLine>::const_iterator find_header(const Examination& e, std::string_view name) {
    return std::ranges::find_if(
        e.head.lines, [&](const HeaderLine& line) { return same_name(line.name, name); });
}

bool is_number(std::string_view text, std::size_t most) {
    return !text.empty() && text.size() <= most &&
           text.find_first_not_of("0123456789") == std::string_view::npos;
}

bool is_lower_hex(std::string_view text, std::size_t length) {
    return text.size() == length &&
           text.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

Finding check_head(Examination& e) {
    auto head = parse_request_head(e.call.head);
    if (!head)
        return reject(
            "malformed", "the request head cannot be read as header lines ended by CR LF");
    e.head = std::move(*head);
    return std::nullopt;
}

Finding check_scheme(Examination& e) {
    if (!e.call.tls)
        return reject("scheme", "a check-in must come over https");
    return std::nullopt;
}

Finding check_method(Examination& e) {
    if (e.head.method != "POST")
        return reject("method", "the method is " + e.head.method + ", not POST");
    return std::nullopt;
}

Finding check_path(Examination& e) {
    constexpr std::string_view before = "/cloud-switch/";
    constexpr std::string_view after = "/checkin";
    const std::string_view target = e.head.target;
    constexpr std::size_t mac_length = 17;
    if (target.size() != before.size() + mac_length + after.size() || !target.starts_with(before) ||
        !target.ends_with(after))
        return reject("path", "the path is " + e.head.target + ", not /cloud-switch/MAC/checkin");
    const std::string mac(target.substr(before.size(), mac_length));
    if (canonical_mac(mac) != mac)
        return reject(
            "path", "the MAC in the path is " + mac + ", not of the form AA:BB:CC:DD:EE:FF");
    e.mac = mac;
    return std::nullopt;
}

Finding check_encoding(Examination& e) {
    for (const std::string_view name : {"Transfer-Encoding", "Content-Encoding"})
        if (count_header(e, name) != 0)
            return reject(
                "encoding", std::string(name) + " is not allowed: the body goes as it is");
    return std::nullopt;
}

Finding check_headers_present(Examination& e) {
    for (const std::string_view name : required_headers) {
        const auto count = count_header(e, name);
        if (count == 0)
            return reject("header-missing", "there is no " + std::string(name) + " header");
        if (count > 1)
            return reject(
                "header-duplicate",
                "the " + std::string(name) + " header came " + std::to_string(count) + " times");
    }
    return std::nullopt;
}

Finding check_header_order(Examination& e) {
    for (std::size_t i = 1; i < required_headers.size(); i++)
        if (find_header(e, required_headers[i]) < find_header(e, required_headers[i - 1]))
            return reject(
                "header-order", "the " + std::string(required_headers[i]) + " header came before " +
                                    std::string(required_headers[i - 1]));
    return std::nullopt;
}

Finding check_content_length(Examination& e) {
    const std::string announced = find_header(e, "Content-Length")->value;
    const std::string received = std::to_string(e.call.body.size());
    if (!is_number(announced, 9))
        return reject("content-length", "Content-Length is \"" + announced + "\"");
    if (!e.call.body_flaw.empty() || announced != received)
        return reject(
            "content-length", "Content-Length is " + announced + ", " +
                                  (e.call.body_flaw.empty() ? "the body has " + received + " bytes"
                                                            : e.call.body_flaw));
    return std::nullopt;
}

Finding check_content_type(Examination& e) {
    const std::string& type = find_header(e, "Content-Type")->value;
    if (type != "application/json")
        return reject("content-type", "Content-Type is \"" + type + "\", not application/json");
    return std::nullopt;
}

// key=K,timestamp=T,nonce=N; read from the end, for a key may hold a comma.
bool parse_authorization(std::string_view text, Authorization& out) {
    constexpr std::string_view key_mark = "key=", time_mark = ",timestamp=", nonce_mark = ",nonce=";
    const std::size_t nonce_at = text.rfind(nonce_mark);
    const std::size_t time_at = text.substr(0, nonce_at).rfind(time_mark);
    if (!text.starts_with(key_mark) || nonce_at == std::string_view::npos ||
        time_at == std::string_view::npos)
        return false;
    out.key = text.substr(key_mark.size(), time_at - key_mark.size());
    out.nonce = text.substr(nonce_at + nonce_mark.size());
    const std::string_view time =
        text.substr(time_at + time_mark.size(), nonce_at - time_at - time_mark.size());
    if (!is_number(time, 18) || !is_lower_hex(out.nonce, 32))
        return false;
    std::from_chars(time.data(), time.data() + time.size(), out.timestamp);
    return true;
}

Finding check_authorization(Examination& e) {
    e.authorization_text = find_header(e, "Authorization")->value;
    if (!parse_authorization(e.authorization_text, e.authorization))
        return reject(
            "authorization", "Authorization is \"" + e.authorization_text +
                                 "\", not key=K,timestamp=SECONDS,nonce=32 lower-case hex digits");
    return std::nullopt;
}

Finding check_switch(Examination& e) {
    auto account = e.examiner.find_account(e.mac);
    if (!account)
        return reject("unknown-switch", "no switch " + e.mac + " is registered");
    e.account = std::move(*account);
    return std::nullopt;
}

Finding check_key(Examination& e) {
    if (e.authorization.key != e.account.key)
        return reject("key", "the key \"" + e.authorization.key + "\" is not the key of " + e.mac);
    return std::nullopt;
}

Finding check_timestamp(Examination& e) {
    const std::int64_t off = e.authorization.timestamp - e.examiner.now;
    if (e.examiner.window > 0 && (off > e.examiner.window || off < -e.examiner.window))
        return reject(
            "timestamp", "the timestamp " + std::to_string(e.authorization.timestamp) + " is " +
                             std::to_string(off < 0 ? -off : off) + " seconds " +
                             (off < 0 ? "behind" : "ahead of") + " the cloud, allowed are " +
                             std::to_string(e.examiner.window));
    return std::nullopt;
}

Finding check_signature(Examination& e) {
    const std::string& sent = find_header(e, "Signature")->value;
    if (!is_lower_hex(sent, 64))
        return reject("signature", "Signature is \"" + sent + "\", not 64 lower-case hex digits");
    const std::string right =
        sign_request(e.account.secret, e.authorization_text, e.head.target, e.call.body);
    if (!same_signature(sent, right))
        return reject(
            "signature", "the signature does not match HMAC-SHA256 of the secret over the "
                         "Authorization value, the path and the " +
                             std::to_string(e.call.body.size()) + " bytes of the body");
    return std::nullopt;
}

Finding check_nonce(Examination& e) {
    if (!e.examiner.record_nonce(e.mac, e.authorization))
        return reject(
            "nonce", "the nonce " + e.authorization.nonce + " was already used with timestamp " +
                         std::to_string(e.authorization.timestamp));
    return std::nullopt;
}

constexpr Finding (*checks[])(Examination&) = {
    check_head,         check_scheme,          check_method,       check_path,
    check_encoding,     check_headers_present, check_header_order, check_content_length,
    check_content_type, check_authorization,   check_switch,       check_key,
    check_timestamp,    check_signature,       check_nonce,
};

} // namespace

std::variant<Verified, Rejection> examine(const Call& call, const Examiner& examiner) {
    Examination examination{call, examiner};
    for (const auto check : checks)
        if (auto finding = check(examination))
            return *finding;
    return Verified{examination.mac, examination.authorization};
}

} // namespace lab
