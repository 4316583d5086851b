// Some of them are written past the HTTP library, which is too honest.
#include "lab/spoiled_reply.h"

#include <zlib.h>

#include <stdexcept>
#include <string>

namespace lab {

namespace {

constexpr std::size_t bomb_size = 16 << 20; // bytes, unpacked
constexpr std::size_t piece_size = 16384;
constexpr int gzip_format = 15 + 16; // zlib's way to say so

bool next_blanks(std::string& piece) {
    piece.assign(piece_size, ' ');
    return true;
}

Reply make_endless() {
    Reply reply;
    reply.next_piece = next_blanks;
    return reply;
}

std::string pack(const std::string& text) {
    z_stream stream{};
    std::string packed(compressBound(text.size()), '\0');
    if (deflateInit2(&stream, 9, Z_DEFLATED, gzip_format, 8, Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::runtime_error("cannot pack");
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

Reply make_redirect() {
    Reply reply{307, "it is elsewhere\n", "text/plain"};
    reply.headers = {{"Location", "/elsewhere"}};
    return reply;
}

} // namespace

bool has_spoiled_reply(Fault fault) {
    return fault == Fault::status || fault == Fault::redirect || fault == Fault::endless ||
           fault == Fault::endless_head || fault == Fault::bomb;
}

Reply make_spoiled_reply(const Misbehaviour& misbehaviour) {
    switch (misbehaviour.fault) {
    case Fault::redirect:
        return make_redirect();
    case Fault::endless:
        return make_endless();
    case Fault::endless_head:
    case Fault::bomb:
        return {};
    default:
        return {misbehaviour.status, "told to fail\n", "text/plain"};
    }
}

namespace {

bool write(Connection& connection, const std::string& text) {
    return connection.write(text.data(), text.size()) > 0;
}

std::string start_head(const Reply& reply) {
    return "HTTP/1.1 " + std::to_string(reply.status) +
           " Unruly\r\nConnection: close\r\nContent-Type: " + reply.type + "\r\n";
}

void write_endless_head(Connection& connection, const Reply& reply) {
    const std::string line = "X-Padding: " + std::string(1000, 'x') + "\r\n";
    for (bool taken = write(connection, start_head(reply)); taken;)
        taken = write(connection, line);
}

void write_short_length(Connection& connection, const Reply& reply) {
    const std::string length = std::to_string(reply.body.size() / 2);
    write(connection, start_head(reply) + "Content-Length: " + length + "\r\n\r\n" + reply.body);
}

// A peer that did not say what it can unpack may pass over a Content-Encoding.
void write_bomb(Connection& connection, const Reply& reply) {
    static const std::string packed = pack(std::string(bomb_size, ' '));
    write(connection, start_head(reply) + "Transfer-Encoding: gzip\r\n\r\n" + packed);
}

} // namespace

bool write_unruly(Connection& connection, const Reply& reply) {
    switch (connection.misbehaviour().fault) {
    case Fault::endless_head:
        write_endless_head(connection, reply);
        break;
    case Fault::short_length:
        write_short_length(connection, reply);
        break;
    case Fault::bomb:
        write_bomb(connection, reply);
        break;
    default:
        return false;
    }
    connection.end_reply();
    return true;
}

} // namespace lab
