#include "doors/frei0r/Instance.h"

#include "doors/frei0r/SceneText.h"
#include "doors/frei0r/ShapeData.h"
#include "doors/memory/PluginHost_MEMORY_Impl.h"
#include "render/RenderDispatch.h"
#include "scene/Diagnostics.h"
#include "shapes/ShapeFile.h"

#include <cstring>
#include <new>

namespace orbel::frei0r {

namespace {

constexpr double usualFrameRate = 30.0;
constexpr std::size_t largestSide = 32767;

/// A chosen file that cannot be drawn is told at once; the frame then shows no stroke.
void checkShapeFile(const std::string& path) {
    if (!path.empty() &&
        (path.size() >= sizeof Orbel_UserData::path || fileExists(path.c_str()) != 1)) {
        tell("the shape file " + inQuotes(path) + " does not exist or cannot be read");
    }
}

} // namespace

Instance::Instance(unsigned width, unsigned height) : m_width(width), m_height(height) {
    prepareShapeTable();
    for (const Control& control : controls()) {
        m_values.push_back(control.initial);
    }
}

void Instance::set(std::size_t control, const void* value) {
    const std::lock_guard lock(m_mutex);
    const Control& which = controls()[control];
    ControlValue taken = takeValue(which, value);
    // Hosts repeat themselves for every frame, and texts are work.
    const bool sameText = taken.text == m_values[control].text;
    m_values[control] = std::move(taken);
    m_settled = false;
    if (sameText) {
        return;
    }
    const std::string& text = m_values[control].text;
    if (which.role == ControlRole::Scene) {
        setScene(text);
    } else if (which.role == ControlRole::FrameRate) {
        setFrameRate(text);
    } else if (which.role == ControlRole::Shape) {
        checkShapeFile(text);
    }
}

void Instance::get(std::size_t control, void* value) {
    const std::lock_guard lock(m_mutex);
    giveValue(controls()[control], m_values[control], value);
}

void Instance::setScene(const std::string& text) {
    if (std::optional<Scene> scene = readSceneText(text)) {
        m_scene = std::move(*scene);
    }
}

void Instance::setFrameRate(const std::string& text) {
    if (text.empty()) {
        m_frameRate.reset();
    } else if (const std::optional<double> rate = readFrameRate(text)) {
        m_frameRate = rate;
    } else {
        tell("the frame rate " + inQuotes(text) +
             " is not used; give a number or a fraction, such as 25 or 30000/1001");
    }
}

const ControlValue& Instance::valueOf(ControlRole role) const {
    std::size_t at = 0;
    while (controls()[at].role != role) {
        ++at;
    }
    return m_values[at];
}

/// A control that was moved wins over the scene; all others leave it to the scene.
void Instance::settle() {
    m_parameters = ParameterStore();
    for (const auto& [id, keys] : m_scene.parameters) {
        m_parameters.setKeys(id, keys);
    }
    const std::string& shape = valueOf(ControlRole::Shape).text;
    if (!shape.empty()) {
        m_parameters.set(PARAM_PRESETS, 0.0); // or the scene's built-in shape would win
    }
    for (std::size_t i = 0; i < m_values.size(); ++i) {
        const Control& control = controls()[i];
        if (control.role != ControlRole::Parameter) {
            continue;
        }
        if (const std::optional<ParameterValue> chosen = chosenValue(control, m_values[i])) {
            m_parameters.set(control.row->id, *chosen);
        }
    }
    setUserDataPath(&m_userData,
                    shape.empty() ? m_scene.shape.value_or("").c_str() : shape.c_str());
    m_settled = true;
}

double Instance::frameOf(double time, TimeUnit unit) const {
    const std::optional<TimeUnit> named = namedTimeUnit(valueOf(ControlRole::TimeUnit).numbers[0]);
    double rate = usualFrameRate;
    if (m_frameRate) {
        rate = *m_frameRate;
    } else if (m_scene.framesPerSecond) {
        rate = exactRate(*m_scene.framesPerSecond);
    }
    return frameAt(time, named.value_or(unit), rate);
}

void Instance::update(double time, TimeUnit unit, const std::uint32_t* input,
                      std::uint32_t* output) {
    const std::lock_guard lock(m_mutex);
    if (!m_settled) {
        settle();
    }
    if (draw(frameOf(time, unit), input, output)) {
        return;
    }
    const std::size_t bytes = m_width * m_height * sizeof *output;
    if (input == nullptr) {
        std::memset(output, 0, bytes);
    } else if (input != output) {
        std::memcpy(output, input, bytes);
    }
}

bool Instance::draw(double frame, const std::uint32_t* input, std::uint32_t* output) {
    if (m_width == 0 || m_width > largestSide || m_height == 0 || m_height > largestSide) {
        return false;
    }
    try {
        MemoryImage picture(static_cast<int>(m_width), static_cast<int>(m_height), RF_RGBA8,
                            RowLayout{});
        picture.setPixelAspect(static_cast<float>(m_scene.pixelAspect));
        const RasterInfo& source = picture.info();
        if (input != nullptr) {
            std::memcpy(source.data, input, m_width * m_height * sizeof *input);
        }
        RasterInfo target = source;
        target.data = reinterpret_cast<std::uint8_t*>(output);
        MemoryHostSettings settings;
        settings.frame = frame;
        settings.renderScaleX = m_scene.renderScaleX;
        settings.renderScaleY = m_scene.renderScaleY;
        settings.alpha = {SourceAlpha::Straight, OutputAlpha::Straight};
        PluginHost_MEMORY_Impl host(source, target, &m_parameters, settings);
        host.setUserData(&m_userData);
        return Render(&host) == 0;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

} // namespace orbel::frei0r
