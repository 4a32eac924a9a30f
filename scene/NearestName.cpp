#include "scene/NearestName.h"

#include <algorithm>
#include <cstddef>

namespace orbel {

namespace {

// A letter left out weighs less than a wrong one, so that beginnings find their words; case weighs
// least.
constexpr std::size_t letter = 4;
constexpr std::size_t leftOut = 3;
constexpr std::size_t letterCase = 1;
// Longer texts are no slip of the fingers.
constexpr std::size_t longest = 64;

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::size_t change(char a, char b) {
    if (a == b) {
        return 0;
    }
    return lower(a) == lower(b) ? letterCase : letter;
}

std::size_t distance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    for (std::size_t j = 0; j <= to.size(); ++j) {
        row[j] = j * leftOut;
    }
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = (i + 1) * letter;
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t above = row[j + 1];
            row[j + 1] =
                std::min({above + letter, row[j] + leftOut, diagonal + change(from[i], to[j])});
            diagonal = above;
        }
    }
    return row.back();
}

} // namespace

const std::string& nearestName(std::string_view text, const std::vector<std::string>& names) {
    const std::string_view start = text.substr(0, longest);
    std::size_t best = 0;
    std::size_t bestDistance = distance(start, names.front());
    for (std::size_t i = 1; i < names.size(); ++i) {
        const std::size_t candidate = distance(start, names[i]);
        if (candidate < bestDistance) {
            best = i;
            bestDistance = candidate;
        }
    }
    return names[best];
}

} // namespace orbel
