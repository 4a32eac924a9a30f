#include "params/RenderArguments.h"

#include "host/FxPlugHost.h"
#include "params/ParameterRows.h"

#include <algorithm>
#include <variant>

namespace orbel {

namespace {

using A = RenderArguments;
template<std::size_t N>
using Numbers = std::array<double A::*, N>;

/// When a field is read: at the frame's own time alone, or at every motion-blur sample anew.
enum class Sampling { OncePerFrame, EachSample };
using enum Sampling;

/// One parameter's place in the record. How it is read follows from its row in the declaration
/// list.
struct Field {
    int id;
    Sampling sampling;
    std::variant<double A::*, Numbers<2>, Numbers<3>, bool A::*, int A::*> place;
};

// In the order of the declaration list, which is the order of reading.
constexpr Field FIELDS[] = {
    {PARAM_SCALE_X, OncePerFrame, &A::scaleX},
    {PARAM_SCALE_Y, OncePerFrame, &A::scaleY},
    {PARAM_STROKE_SEQUENTIALLY, OncePerFrame, &A::strokeSequentially},
    {PARAM_COLOR, EachSample, Numbers<3>{&A::colorRed, &A::colorGreen, &A::colorBlue}},
    {PARAM_THICKNESS, EachSample, &A::thickness},
    {PARAM_FEATHER, EachSample, &A::feather},
    {PARAM_START, EachSample, &A::start},
    {PARAM_END, EachSample, &A::end},
    {PARAM_OFFSET, EachSample, &A::offset},
    {PARAM_LOOP, OncePerFrame, &A::loop},
    {PARAM_ENABLE_TAPER, OncePerFrame, &A::enableTaper},
    {PARAM_COMPRESS_TO_FIT, OncePerFrame, &A::compressToFit},
    {PARAM_START_THICKNESS, EachSample, &A::startThickness},
    {PARAM_END_THICKNESS, EachSample, &A::endThickness},
    {PARAM_TAPER_START, EachSample, &A::taperStart},
    {PARAM_TAPER_END, EachSample, &A::taperEnd},
    {PARAM_START_SHAPE, EachSample, &A::startShape},
    {PARAM_END_SHAPE, EachSample, &A::endShape},
    {PARAM_STEP_ADJUST_METHOD, OncePerFrame, &A::stepAdjustMethod},
    {PARAM_BEND, EachSample, &A::bend},
    {PARAM_BEND_AXIS, EachSample, &A::bendAxis},
    {PARAM_BEND_AROUND_CENTER, OncePerFrame, &A::bendAroundCenter},
    {PARAM_POSITION_XY, EachSample, Numbers<2>{&A::positionX, &A::positionY}},
    {PARAM_POSITION_Z, EachSample, &A::positionZ},
    {PARAM_ROTATION_X, EachSample, &A::rotationX},
    {PARAM_ROTATION_Y, EachSample, &A::rotationY},
    {PARAM_ROTATION_Z, EachSample, &A::rotationZ},
    {PARAM_ORDER, OncePerFrame, &A::order},
    {PARAM_ENABLE_REPEATER, OncePerFrame, &A::enableRepeater},
    {PARAM_SYMMETRIC_DOUBLER, OncePerFrame, &A::symmetricDoubler},
    {PARAM_INSTANCES, EachSample, &A::instances},
    {PARAM_REPEATER_OPACITY, EachSample, &A::repeaterOpacity},
    {PARAM_REPEATER_SCALE, EachSample, &A::repeaterScale},
    {PARAM_REPEATER_FACTOR, EachSample, &A::repeaterFactor},
    {PARAM_DISPLACE_X, EachSample, &A::displaceX},
    {PARAM_DISPLACE_Y, EachSample, &A::displaceY},
    {PARAM_DISPLACE_Z, EachSample, &A::displaceZ},
    {PARAM_REPEATER_ROTATION_X, EachSample, &A::repeaterRotationX},
    {PARAM_REPEATER_ROTATION_Y, EachSample, &A::repeaterRotationY},
    {PARAM_REPEATER_ROTATION_Z, EachSample, &A::repeaterRotationZ},
    {PARAM_ADJUST_STEP, EachSample, &A::adjustStep},
    {PARAM_EXACT_STEP_MATCH, OncePerFrame, &A::exactStepMatch},
    {PARAM_INTERNAL_OPACITY, EachSample, &A::internalOpacity},
    {PARAM_LOW_ALPHA_SAT_BOOST, EachSample, &A::lowAlphaSatBoost},
    {PARAM_LOW_ALPHA_HUE_ROTATION, EachSample, &A::lowAlphaHueRotation},
    {PARAM_HI_ALPHA_BRIGHT_BOOST, EachSample, &A::hiAlphaBrightBoost},
    {PARAM_VIEW, OncePerFrame, &A::view},
    {PARAM_Z_CLIP_FRONT, EachSample, &A::zClipFront},
    {PARAM_Z_CLIP_BACK, EachSample, &A::zClipBack},
    {PARAM_START_FADE, OncePerFrame, &A::startFade},
    {PARAM_AUTO_ORIENT, OncePerFrame, &A::autoOrient},
    {PARAM_CAMERA_XY, OncePerFrame, Numbers<2>{&A::cameraX, &A::cameraY}},
    {PARAM_CAMERA_Z, OncePerFrame, &A::cameraZ},
    {PARAM_ZOOM, OncePerFrame, &A::zoom},
    {PARAM_CAMERA_ROTATION_X, OncePerFrame, &A::cameraRotationX},
    {PARAM_CAMERA_ROTATION_Y, OncePerFrame, &A::cameraRotationY},
    {PARAM_CAMERA_ROTATION_Z, OncePerFrame, &A::cameraRotationZ},
    {PARAM_MOTION_BLUR, OncePerFrame, &A::motionBlur},
    {PARAM_SHUTTER_ANGLE, OncePerFrame, &A::shutterAngle},
    {PARAM_SHUTTER_PHASE, OncePerFrame, &A::shutterPhase},
    {PARAM_LEVELS, OncePerFrame, &A::levels},
    {PARAM_OPACITY, EachSample, &A::opacity},
    {PARAM_TRANSFER_MODE, OncePerFrame, &A::transferMode},
};

constexpr bool fits(RowKind kind, const Field& field) {
    switch (kind) {
    case RowKind::Float:
    case RowKind::Angle:
        return std::holds_alternative<double A::*>(field.place);
    case RowKind::Point:
        return std::holds_alternative<Numbers<2>>(field.place);
    case RowKind::Color:
        return std::holds_alternative<Numbers<3>>(field.place);
    case RowKind::Toggle:
        return std::holds_alternative<bool A::*>(field.place);
    case RowKind::Menu:
        return std::holds_alternative<int A::*>(field.place);
    default:
        return false;
    }
}

// The shape's two parameters alone have no place in the record.
constexpr bool isComplete() {
    const auto* field = std::begin(FIELDS);
    for (const ParameterRow& row : rows::TABLE) {
        if (!row.isParameter() || row.id == PARAM_SHAPE || row.id == PARAM_PRESETS) {
            continue;
        }
        if (field == std::end(FIELDS) || field->id != row.id || !fits(row.kind, *field)) {
            return false;
        }
        ++field;
    }
    return field == std::end(FIELDS);
}
static_assert(isComplete(), "every parameter has its field, in declared order and of its kind");

/// Reads one field the way its row says.
class FieldReader {
public:
    FieldReader(ParameterReader& reader, A* args) : m_reader(reader), m_args(args) {}

    void read(const Field& field) const {
        std::visit([&](const auto& place) { this->read(*findParameter(field.id), place); },
                   field.place);
    }

private:
    void read(const ParameterRow& row, double A::*place) const {
        double& number = m_args->*place;
        row.kind == RowKind::Angle ? m_reader.readAngle(row.id, number)
                                   : m_reader.readFloat(row.id, number);
    }
    void read(const ParameterRow& row, const Numbers<2>& place) const {
        m_reader.readPoint(row.id, m_args->*place[0], m_args->*place[1]);
    }
    void read(const ParameterRow& row, const Numbers<3>& place) const {
        m_reader.readColor(row.id, m_args->*place[0], m_args->*place[1], m_args->*place[2]);
    }
    void read(const ParameterRow& row, bool A::*place) const {
        m_reader.readToggle(row.id, m_args->*place);
    }
    void read(const ParameterRow& row, int A::*place) const {
        m_reader.readMenu(row.id, m_args->*place);
    }

    ParameterReader& m_reader;
    A* m_args;
};

// Exact; a NaN differs from everything.
bool isEqual(const Field& field, const A& a, const A& b) {
    return std::visit(
        [&](const auto& place) {
            if constexpr (std::is_member_pointer_v<std::decay_t<decltype(place)>>) {
                return a.*place == b.*place;
            } else {
                return std::ranges::all_of(place, [&](auto part) { return a.*part == b.*part; });
            }
        },
        field.place);
}

} // namespace

void HostParameterReader::readFloat(int param, double& value) {
    m_host->GetFloatValue(param, 0, m_time, value);
}

void HostParameterReader::readAngle(int param, double& degrees) {
    m_host->GetAngleValue(param, 0, m_time, degrees);
}

void HostParameterReader::readToggle(int param, bool& value) {
    m_host->GetBoolValue(param, 0, m_time, value);
}

void HostParameterReader::readMenu(int param, int& index) {
    m_host->GetIntValue(param, 0, m_time, index);
}

void HostParameterReader::readColor(int param, double& red, double& green, double& blue) {
    m_host->GetColorValue(param, 0, m_time, red, green, blue);
}

void HostParameterReader::readPoint(int param, double& x, double& y) {
    m_host->GetPoint2DValue(param, 0, m_time, x, y);
}

PluginHost_API::TimeObject currentTimeObject(PluginHost_API* host) {
    return {host->getCurrentTime(), host->getTimeStep(), 0};
}

void readRenderArguments(ParameterReader& reader, RenderArguments* args) {
    for (const Field& field : FIELDS) {
        FieldReader(reader, args).read(field);
    }
}

void readSampledArguments(ParameterReader& reader, RenderArguments* args) {
    for (const Field& field : FIELDS) {
        if (field.sampling == EachSample) {
            FieldReader(reader, args).read(field);
        }
    }
}

bool sameSampledArguments(const RenderArguments& a, const RenderArguments& b) {
    return std::ranges::all_of(FIELDS, [&](const Field& field) {
        return field.sampling == OncePerFrame || isEqual(field, a, b);
    });
}

int ParamsRetrieveValues(PluginHost_API* host, RenderArguments* args) {
    if (FXPLUGHost* const record = host->getFXPLUGHost()) {
        readRenderArguments(record->reader(), args);
        return 1;
    }
    HostParameterReader reader(host, currentTimeObject(host));
    readRenderArguments(reader, args);
    return 1;
}

unsigned GetMBlurValue(PluginHost_API* host) {
    int index = 1;
    host->GetIntValue(PARAM_MOTION_BLUR, 0, currentTimeObject(host), index);
    return static_cast<unsigned>(index);
}

int GetFloatColor(PluginHost_API* /*host*/, double* /*red*/, double* /*green*/, double* /*blue*/,
                  PluginHost_API::TimeObject* /*time*/) {
    return 0;
}

int GetMaskID(PluginHost_API* /*host*/) {
    return 0;
}

int GetCompCameraParamValue(PluginHost_API* /*host*/) {
    return 0;
}

int HasFixedShapeProperty(PluginHost_API* /*host*/) {
    return 1;
}

} // namespace orbel
