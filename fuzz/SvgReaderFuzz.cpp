#include "shapes/SvgParser.h"

#include <cstddef>
#include <cstdint>

namespace {

/// Formats every notice, so that their texts are exercised too.
class Listener final : public orbel::SvgReaderObserver {
    void notice(const orbel::SvgNotice& notice) override {
        if (notice.text.empty()) {
            __builtin_trap();
        }
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orbel::PluginPath_Impl shape;
    orbel::svg_parser parser;
    Listener listener;
    parser.setPath(&shape);
    parser.setObserver(&listener);
    parser.parseBuffer({reinterpret_cast<const char*>(data), size});
    shape.normalize();
    return 0;
}
