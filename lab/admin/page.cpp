// The page for people: the files that stand in the program, under rules that keep it to itself.
#include <algorithm>

#include "lab/admin/handlers.h"
#include "lab/page_files.h"

namespace lab {

namespace {

// Nothing from elsewhere, nothing inline, and no text ever becomes markup.
constexpr const char* content_policy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; connect-src 'self'; "
    "base-uri 'none'; form-action 'none'; frame-ancestors 'none'; "
    "require-trusted-types-for 'script'; trusted-types 'none'";

Reply reply_file(std::string_view name) {
    const auto files = list_page_files();
    const auto file = std::ranges::find(files, name, &PageFile::name);
    if (file == files.end())
        throw Refusal{404, "the page has no file \"" + std::string(name) + "\""};
    Reply reply{200, std::string(file->content), std::string(file->type)};
    reply.headers = {
        {"Content-Security-Policy", content_policy},
        {"X-Content-Type-Options", "nosniff"},
        {"Referrer-Policy", "no-referrer"},
        {"Cross-Origin-Opener-Policy", "same-origin"},
        {"Cache-Control", "no-cache"}};
    return reply;
}

} // namespace

Reply show_page(const Request&) { return reply_file("index.html"); }

Reply show_page_file(const Request& request) { return reply_file(request.words[0]); }

} // namespace lab
