# Makes a C++ table of all files of a folder; index.html becomes "/" and comes first.
#
#   cmake -DFOLDER=<built page> -DTABLE=<Page.cpp> -P EmbedPage.cmake
cmake_minimum_required(VERSION 3.25)

set(type_html "text/html; charset=utf-8")
set(type_js "text/javascript; charset=utf-8")
set(type_css "text/css; charset=utf-8")
set(type_svg "image/svg+xml")
set(type_png "image/png")
set(type_woff2 "font/woff2")

file(GLOB names RELATIVE "${FOLDER}" "${FOLDER}/*")
if(NOT "index.html" IN_LIST names)
    message(FATAL_ERROR "${FOLDER} holds no index.html: the page is not built")
endif()
list(REMOVE_ITEM names index.html)
list(PREPEND names index.html)

set(arrays "")
set(rows "")
set(number 0)
foreach(name IN LISTS names)
    string(REGEX MATCH "[^.]*$" ending "${name}")
    if(NOT DEFINED type_${ending})
        message(FATAL_ERROR "${FOLDER}/${name}: files with this ending are not served")
    endif()
    file(READ "${FOLDER}/${name}" bytes HEX)
    string(LENGTH "${bytes}" size)
    math(EXPR size "${size} / 2")
    string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
    string(REGEX REPLACE "(................................................................................)"
                         "\\1\n" bytes "${bytes}")
    string(APPEND arrays "constexpr unsigned char file${number}[] = {\n${bytes}0};\n")
    set(path "/${name}")
    if(name STREQUAL "index.html")
        set(path "/")
    endif()
    string(APPEND rows
           "        {\"${path}\", \"${type_${ending}}\", text(file${number}, ${size})},\n")
    math(EXPR number "${number} + 1")
endforeach()

file(WRITE "${TABLE}.new" "#include \"studio/Page.h\"

#include <cstddef>

namespace orbel::studio {

namespace {

${arrays}
std::string_view text(const unsigned char* bytes, std::size_t size) {
    return {reinterpret_cast<const char*>(bytes), size};
}

} // namespace

std::span<const PageFile> pageFiles() {
    static const PageFile files[] = {
${rows}    };
    return files;
}

} // namespace orbel::studio
")
file(COPY_FILE "${TABLE}.new" "${TABLE}" ONLY_IF_DIFFERENT)
file(REMOVE "${TABLE}.new")
file(TOUCH_NOCREATE "${TABLE}")
