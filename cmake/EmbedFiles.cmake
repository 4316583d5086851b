# Run as a script: writes OUTPUT, a C++ source with the lab's page and the schemas of the wire in it.
file(GLOB files ${ROOT}/lab/page/* ${ROOT}/docs/schema/*.schema.json)
list(SORT files)
set(types html "text/html" css "text/css" js "text/javascript" svg "image/svg+xml" json "application/json")

set(arrays "")
set(table "")
set(count 0)
foreach(file IN LISTS files)
  cmake_path(GET file FILENAME name)
  cmake_path(GET file EXTENSION LAST_ONLY extension)
  string(SUBSTRING ${extension} 1 -1 extension)
  list(FIND types ${extension} found)
  math(EXPR found "${found} + 1")
  list(GET types ${found} type)
  file(READ ${file} hex HEX)
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${hex}")
  string(APPEND arrays "constexpr unsigned char file_${count}[] = {${bytes}};\n")
  string(APPEND table "    {\"${name}\", \"${type}; charset=utf-8\", text_of(file_${count})},\n")
  math(EXPR count "${count} + 1")
endforeach()

file(WRITE ${OUTPUT} "// Made from lab/page and docs/schema.
#include \"lab/page_files.h\"

namespace lab {

namespace {

template <std::size_t size> std::string_view text_of(const unsigned char (&bytes)[size]) {
    return {reinterpret_cast<const char*>(bytes), size};
}

${arrays}
const PageFile files[] = {
${table}};

} // namespace

std::span<const PageFile> list_page_files() { return files; }

} // namespace lab
")
