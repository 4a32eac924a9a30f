#include <cstdlib>

namespace {

struct Crash {
    Crash() { std::abort(); }
};

// Constructed while the file is loaded.
const Crash crash;

} // namespace
