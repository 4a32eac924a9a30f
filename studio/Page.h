#pragma once

#include <span>
#include <string_view>

namespace orbel::studio {

/// A file of the page, as the program carries it.
struct PageFile {
    std::string_view path; ///< as in the address: "/studio.js"
    std::string_view type;
    std::string_view bytes;
};

/// Everything that the page is made of; "/" is the first.
[[nodiscard]] std::span<const PageFile> pageFiles();

} // namespace orbel::studio
