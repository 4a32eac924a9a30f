#include "studio/Drop.h"

#include "shapes/PathModel.h"
#include "shapes/SvgParser.h"
#include "studio/Drawings.h"

#include <boost/archive/iterators/binary_from_base64.hpp>
#include <boost/archive/iterators/transform_width.hpp>

#include <algorithm>
#include <utility>
#include <vector>

namespace orbel::studio {

namespace {

/// Counts notices of one wording, where they first stand.
class LossCounter final : public SvgReaderObserver {
public:
    void notice(const SvgNotice& notice) override {
        const auto known = std::find_if(m_losses.begin(), m_losses.end(), [&](const json& loss) {
            return loss["message"] == notice.text;
        });
        if (known != m_losses.end()) {
            (*known)["count"] = (*known)["count"].get<int>() + 1;
        } else {
            m_losses.push_back({{"line", notice.line}, {"message", notice.text}, {"count", 1}});
        }
    }
    [[nodiscard]] json take() { return std::move(m_losses); }

private:
    json m_losses = json::array();
};

json lossesOf(std::string_view svg) {
    LossCounter counter;
    PluginPath_Impl path;
    svg_parser parser;
    parser.setPath(&path);
    parser.setObserver(&counter);
    parser.parseBuffer({svg.data(), svg.size()});
    json losses = counter.take();
    if (path.outlines().empty()) {
        losses.push_back({{"line", 0}, {"message", "no stroke will be drawn"}, {"count", 1}});
    }
    return losses;
}

/// The name that a file has elsewhere, without what leads out of a folder or hides in one.
std::string plainName(const std::string& given) {
    std::string name = given.substr(given.find_last_of("/\\") + 1);
    std::replace_if(
        name.begin(), name.end(),
        [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; }, '_');
    name.erase(0, name.find_first_not_of('.'));
    return name;
}

} // namespace

std::string bytesOfBase64(std::string text) {
    using Decoded = boost::archive::iterators::transform_width<
        boost::archive::iterators::binary_from_base64<std::string::const_iterator>, 8, 6>;
    const auto unreadable = [] {
        return Refusal{400, "the file did not arrive whole", "drop it again"};
    };
    if (text.size() % 4 != 0) {
        throw unreadable();
    }
    const std::size_t whole = std::min(text.find('='), text.size());
    const std::size_t padding = text.size() - whole;
    if (padding > 2 || text.find_first_not_of('=', whole) != std::string::npos) {
        throw unreadable();
    }
    std::fill(text.begin() + static_cast<std::ptrdiff_t>(whole), text.end(), 'A');
    try {
        std::string bytes(Decoded(text.cbegin()), Decoded(text.cend()));
        bytes.resize(bytes.size() - std::min(padding, bytes.size()));
        return bytes;
    } catch (const boost::archive::iterators::dataflow_exception&) {
        throw unreadable();
    }
}

json takeDrop(SceneFolder& folder, const std::string& name, std::string_view bytes) {
    std::string plain = plainName(name);
    const auto path = folder.pathOf(plain, {FileKind::Svg, FileKind::Picture, FileKind::Clip});
    if (!SceneFolder::holds(path, bytes)) {
        plain = folder.freeName(plain);
        SceneFolder::write(folder.pathOf(plain), bytes, Overwrite::No);
    }
    json dropped{{"name", plain}, {"losses", json::array()}};
    if (kindOf(plain) == FileKind::Svg) {
        dropped["losses"] = lossesOf(bytes);
    }
    if (!dropped["losses"].empty()) {
        dropped["before"] = outlinesJson(bytes);
        dropped["after"] = importJson(bytes);
    }
    return dropped;
}

} // namespace orbel::studio
