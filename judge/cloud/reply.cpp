// As much of HTTP/1.1 as a reply has: a head, and a body that ends by its length, in chunks, or
// with the connection.
#include "judge/cloud/reply.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace judge::cloud {

namespace {

constexpr std::size_t longest_head = 64 << 10;

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) {
        return static_cast<char>(std::tolower(c));
    });
    return text;
}

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

// The value of a header; empty when it is not there.
std::string header(const std::string& head, const std::string& name) {
    const std::string names = lower(head);
    const std::size_t at = names.find("\r\n" + lower(name) + ":");
    if (at == std::string::npos)
        return {};
    const std::size_t begin = at + 2 + name.size() + 1;
    return trimmed(head.substr(begin, head.find("\r\n", begin) - begin));
}

int status_of(const std::string& head) {
    int status = 0;
    const std::size_t at = head.find(' ');
    if (head.starts_with("HTTP/1.") && at != std::string::npos)
        std::from_chars(head.data() + at + 1, head.data() + head.size(), status);
    return status;
}

// The bytes behind the head, as they come.
class Stream {
  public:
    Stream(Connection& connection, Clock::time_point until)
        : connection_(connection), until_(until) {}

    // False when no more comes.
    bool more() {
        const std::string bytes = connection_.receive(until_);
        bytes_ += bytes;
        return !bytes.empty();
    }
    // What stands before `mark`, which is taken, too; nullopt when it does not come.
    std::optional<std::string> take_to(const std::string& mark, std::size_t most) {
        std::size_t at;
        while ((at = bytes_.find(mark)) == std::string::npos)
            if (bytes_.size() > most || !more())
                return std::nullopt;
        std::string text = bytes_.substr(0, at);
        bytes_.erase(0, at + mark.size());
        return text;
    }
    bool take(std::size_t count, std::string& to) {
        while (bytes_.size() < count && more())
            ;
        const std::size_t there = std::min(count, bytes_.size());
        to += bytes_.substr(0, there);
        bytes_.erase(0, there);
        return there == count;
    }
    bool empty() const { return bytes_.empty(); }

  private:
    Connection& connection_;
    Clock::time_point until_;
    std::string bytes_;
};

bool read_chunks(Stream& stream, std::string& body) {
    while (body.size() <= longest_body) {
        const auto line = stream.take_to("\r\n", 1000);
        std::size_t size = 0;
        if (!line ||
            std::from_chars(line->data(), line->data() + line->size(), size, 16).ec != std::errc())
            return false;
        if (size == 0)
            return true;
        std::string end;
        if (!stream.take(std::min(size, longest_body + 1), body) || !stream.take(2, end))
            return false;
    }
    return false;
}

bool read_body(Stream& stream, Connection& connection, const std::string& head, std::string& body) {
    if (lower(header(head, "Transfer-Encoding")) == "chunked")
        return read_chunks(stream, body);
    const std::string length = header(head, "Content-Length");
    if (!length.empty()) {
        std::size_t size = 0;
        std::from_chars(length.data(), length.data() + length.size(), size);
        return stream.take(std::min(size, longest_body + 1), body);
    }
    stream.take(longest_body + 1, body);
    return connection.ended();
}

std::string why_none(const Stream& stream, const Connection& connection, bool late) {
    if (!connection.fault().empty())
        return connection.fault();
    if (!stream.empty())
        return "what came is no HTTP reply";
    return late ? "nothing came" : "the connection was closed without an answer";
}

} // namespace

Reply receive_reply(Connection& connection, Clock::time_point until) {
    const auto begin = Clock::now();
    Stream stream(connection, until);
    Reply reply;
    std::optional<std::string> head;
    do { // 1xx only announces
        head = stream.take_to("\r\n\r\n", longest_head);
        reply.status = head ? status_of(*head) : 0;
    } while (head && reply.status >= 100 && reply.status < 200);
    if (reply.status == 0) {
        reply.late = !connection.ended() && connection.fault().empty() && !head;
        reply.fault = why_none(stream, connection, reply.late);
    } else {
        const std::string lines = *head + "\r\n";
        reply.type = header(lines, "Content-Type");
        reply.location = header(lines, "Location");
        const bool bare = reply.status == 204 || reply.status == 304;
        reply.whole = bare || read_body(stream, connection, lines, reply.body);
    }
    reply.seconds = Seconds(Clock::now() - begin).count();
    return reply;
}

std::optional<Json> Reply::object() const {
    Json document = Json::parse(body, nullptr, false);
    return document.is_object() ? std::optional(std::move(document)) : std::nullopt;
}

std::string Reply::text() const {
    if (status == 0)
        return "no reply: " + fault;
    constexpr std::size_t shown = 300;
    std::string text = std::to_string(status);
    if (!location.empty())
        text += " to " + location;
    text += body.empty() ? ", no body"
                         : (type.empty() ? "" : " " + type) + ": " + body.substr(0, shown);
    if (body.size() > shown)
        text += "...";
    while (text.ends_with('\n'))
        text.pop_back();
    return text + (whole ? "" : " (cut short)");
}

} // namespace judge::cloud
