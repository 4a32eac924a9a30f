#include "drawing/ShapeLosses.h"

#include "shapes/PathModel.h"
#include "shapes/SvgParser.h"

#include <algorithm>
#include <cmath>

namespace orbel {

namespace {

/// Keeps the first notice of each text and counts the others.
class LossCollector final : public SvgReaderObserver {
public:
    explicit LossCollector(std::vector<ShapeLoss>* losses) : m_losses(losses) {}

    void notice(const SvgNotice& notice) override {
        const auto known =
            std::find_if(m_losses->begin(), m_losses->end(),
                         [&notice](const ShapeLoss& loss) { return loss.text == notice.text; });
        if (known != m_losses->end()) {
            ++known->count;
        } else {
            m_losses->push_back({notice.issue, notice.text, notice.line, 1});
        }
    }

private:
    std::vector<ShapeLoss>* m_losses;
};

template<typename Parse>
PlainReading readPlain(const Parse& parse) {
    PlainReading reading;
    PluginPath_Impl path;
    LossCollector collector(&reading.losses);
    svg_parser parser;
    parser.setPath(&path);
    parser.setObserver(&collector);
    parse(&parser);
    path.normalize();
    reading.outlines = path.outlines().size();
    for (const auto& outline : path.outlines()) {
        reading.flat =
            reading.flat || (!outline.vertices.empty() && (std::isnan(outline.vertices.front().x) ||
                                                           std::isnan(outline.vertices.front().y)));
    }
    return reading;
}

} // namespace

PlainReading readPlainFile(const std::string& file) {
    return readPlain([&file](svg_parser* parser) { parser->parse(file.c_str()); });
}

PlainReading readPlainText(std::string_view svg) {
    return readPlain([svg](svg_parser* parser) { parser->parseBuffer(svg); });
}

} // namespace orbel
