// The files of the page for people, and the schemas that it reads. They are part of the program.
#pragma once

#include <span>
#include <string_view>

namespace lab {

struct PageFile {
    std::string_view name; // "index.html"
    std::string_view type; // as a Content-Type says it
    std::string_view content;
};

std::span<const PageFile> list_page_files();

} // namespace lab
