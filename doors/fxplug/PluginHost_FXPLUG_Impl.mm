#include "doors/fxplug/PluginHost_FXPLUG_Impl.h"

#include "doors/fxplug/HostApis.h"
#include "doors/fxplug/HostKind.h"
#include "doors/fxplug/Owned.h"
#include "doors/fxplug/RowCopy.h"
#include "doors/fxplug/Vo_Orbel_CustomParam.h"
#include "host/Numeric.h"
#include "params/InstanceData.h"
#include "params/ParameterTable.h"
#include "render/Matrix4.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace orbel {

namespace {

constexpr long fourCC(char a, char b, char c, char d) {
    return (static_cast<long>(a) << 24) | (static_cast<long>(b) << 16) |
           (static_cast<long>(c) << 8) | static_cast<long>(d);
}

constexpr long APPLICATION_FINAL_CUT = fourCC('F', 'C', 'P', 'R');
constexpr long APPLICATION_MOTION = fourCC('M', 'O', 'T', 'N');
constexpr FxUInt QUALITY_HIGH = 2;
/// How far a full frame may differ from the output's height and not be taken for a field.
constexpr int FULL_FRAME_TOLERANCE = 6;
constexpr double SECOND_FIELD_FROM = 0.49;
constexpr double SECOND_FIELD = 0.5;
constexpr double REDUCED_SCALE_BELOW = 0.99;
constexpr double SCENE_CAMERA_ZOOM = 900.0;

int answer(bool known) {
    return known ? 0 : 1;
}

double wholeFrame(double time) {
    return std::max(0.0, std::floor(time));
}

} // namespace

PluginHost_FXPLUG_Impl::PluginHost_FXPLUG_Impl(id<FxParameterCreationAPI> creation,
                                               id<FxParameterRetrievalAPI> retrieval,
                                               FxBitmap* input, FxBitmap* output,
                                               const FxRenderInfo* info,
                                               id<FxTemporalImageAPI> temporal,
                                               id<FxParameterSettingAPI> setting)
    : m_creation(creation),
      m_retrieval(retrieval),
      m_input(input),
      m_output(output),
      m_info(info),
      m_temporal(temporal),
      m_setting(setting),
      m_reader(retrieval, 0.0) {}

void PluginHost_FXPLUG_Impl::setHostVersionNum(id<PROAPIAccessing> manager) {
    const Owned<FxHostCapabilities*> capabilities = makeHostCapabilities(manager);
    const auto version = static_cast<UInt32>([capabilities.get() hostVersionNumber]);
    if (version != 0) {
        m_majorVersion = static_cast<int>((version >> 24) & 0xF);
        m_minorVersion = static_cast<int>((version >> 20) & 0xF);
    }
}

double PluginHost_FXPLUG_Impl::getFrame() const {
    return m_info == nullptr ? m_fallbackFrame : m_info->frame;
}

double PluginHost_FXPLUG_Impl::timeToFrame(const TimeObject& time) {
    return time.getTime() / time.time_step();
}

double PluginHost_FXPLUG_Impl::writeTime() const {
    return m_action == nil ? getFrame() : [m_action currentTime];
}

// --- Host record ---

ParameterReader& PluginHost_FXPLUG_Impl::reader() {
    m_reader = FxPlugParameterReader(m_retrieval, getFrame());
    return m_reader;
}

int PluginHost_FXPLUG_Impl::readPreset() {
    int preset = 0;
    FxPlugParameters(m_retrieval, m_info == nullptr ? 0.0 : m_info->frame)
        .getInt(PARAM_PRESETS, preset);
    return preset;
}

void PluginHost_FXPLUG_Impl::readShapeFile(Orbel_UserData* data) {
    id<NSCoding> value = nil;
    [m_retrieval getCustomParameterValue:&value fromParm:PARAM_SHAPE];
    const id object = value;
    if ([object isKindOfClass:[Vo_Orbel_CustomParam class]]) {
        const void* const name = [static_cast<Vo_Orbel_CustomParam*>(object) getValue];
        std::memcpy(data->path, name, sizeof data->path);
        // A damaged project may hold a name without an end.
        data->path[sizeof data->path - 1] = '\0';
    }
}

void PluginHost_FXPLUG_Impl::writeShapeFile(const Orbel_UserData* data) {
    const double time = m_info == nullptr ? 0.0 : m_info->frame;
    Vo_Orbel_CustomParam* const value =
        [[[Vo_Orbel_CustomParam alloc] initWith:data->path] autorelease];
    [m_setting setCustomParameterValue:value toParm:PARAM_SHAPE];
    FxPlugParameterWriter(m_setting, time).setInt(PARAM_PRESETS, 0);
}

int PluginHost_FXPLUG_Impl::cameraMatrix(long time, long timeScale, Vx_Matrix4* camera,
                                         double* zoom) {
    if (m_threeD == nil) {
        return 1;
    }
    NSData* const matrix =
        [m_threeD layerMatrixAtTime:static_cast<double>(time) / static_cast<double>(timeScale)];
    double columns[4][4];
    if (matrix == nil || [matrix length] < sizeof columns) {
        return 1;
    }
    [matrix getBytes:columns length:sizeof columns];
    // The host multiplies column vectors, the core row vectors.
    for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t j = 0; j < 4; ++j) {
            camera->m[i][j] = columns[j][i];
        }
    }
    *zoom = SCENE_CAMERA_ZOOM;
    return 0;
}

// --- Images ---

int PluginHost_FXPLUG_Impl::getOutputWidth() {
    return outputOverride() != nullptr ? outputOverride()->getWidth()
                                       : static_cast<int>([m_output width]);
}

int PluginHost_FXPLUG_Impl::getOutputHeight() {
    return outputOverride() != nullptr ? outputOverride()->getHeight()
                                       : static_cast<int>([m_output height]);
}

void PluginHost_FXPLUG_Impl::getRasterInfo(PluginRaster_API* raster, RasterInfo* info) {
    const FXPLUGRaster* const handle = raster == nullptr ? nullptr : raster->getFXPLUGRaster();
    if (handle != nullptr && handle->info) {
        *info = *handle->info;
    } else if (handle != nullptr) {
        describeBitmap(handle->bitmap, m_flipRows, info);
    }
}

void PluginHost_FXPLUG_Impl::getInputRasterInfo(int /*layer*/, RasterInfo* info) {
    describeBitmap(m_input, m_flipRows, info);
}

void PluginHost_FXPLUG_Impl::describeOutput(RasterInfo* info) {
    describeBitmap(m_output, m_flipRows, info);
}

void PluginHost_FXPLUG_Impl::getSourceLayerDimensions(int& width, int& height) {
    width = static_cast<int>([m_input width]);
    height = static_cast<int>([m_input height]);
}

PluginRaster_API* PluginHost_FXPLUG_Impl::getInputRaster(int /*layer*/) {
    return m_input == nil ? nullptr : new PluginRaster_FXPLUG_Impl(m_input);
}

PluginRaster_API* PluginHost_FXPLUG_Impl::getOutputRaster() {
    if (outputOverride() != nullptr) {
        return new PluginRaster_FXPLUG_Impl(std::make_unique<RasterInfo>(outputInfo()), false);
    }
    return m_output == nil ? nullptr : new PluginRaster_FXPLUG_Impl(m_output);
}

PluginRaster_API* PluginHost_FXPLUG_Impl::allocRaster(int width, int height, PixelType /*type*/,
                                                      int& rowBytes, int /*flags*/) {
    rowBytes = 0;
    auto info = std::make_unique<RasterInfo>(outputInfo());
    const auto row = std::max(static_cast<std::int64_t>(info->rowBytes),
                              static_cast<std::int64_t>(width) * info->bytesPerPixel);
    const std::int64_t limit = std::numeric_limits<int>::max();
    if (width <= 0 || height <= 0 || info->bytesPerPixel <= 0 || row > limit / height) {
        return nullptr;
    }
    info->width = width;
    info->height = height;
    info->rowBytes = static_cast<int>(row);
    info->data = static_cast<std::uint8_t*>(allocMemory(static_cast<int>(row) * height));
    if (info->data == nullptr) {
        return nullptr;
    }
    return new PluginRaster_FXPLUG_Impl(std::move(info), true);
}

PluginRaster_API* PluginHost_FXPLUG_Impl::allocRaster(RasterInfo* info) {
    return new PluginRaster_FXPLUG_Impl(std::unique_ptr<RasterInfo>(info), true);
}

void PluginHost_FXPLUG_Impl::deallocRaster(PluginRaster_API* raster) {
    FXPLUGRaster* const handle = raster == nullptr ? nullptr : raster->getFXPLUGRaster();
    if (handle != nullptr && handle->info) {
        if (handle->ownsPixels) {
            deallocMemory(firstByte(*handle->info));
        }
        *handle->info = RasterInfo();
    }
}

PluginRaster_API* PluginHost_FXPLUG_Impl::checkoutLayer(int param, int flags) {
    return checkoutLayer(param, getFrame(), flags);
}

PluginRaster_API* PluginHost_FXPLUG_Impl::checkoutLayer(int param, double time, int /*flags*/) {
    if (m_retrieval == nil || m_info == nullptr) {
        return nullptr;
    }
    const Fetch fetch = [&](double frame) {
        FxBitmap* bitmap = nil;
        double offsetX = 0.0;
        double offsetY = 0.0;
        [m_retrieval getBitmap:&bitmap
                  layerOffsetX:&offsetX
                  layerOffsetY:&offsetY
                   requestInfo:*m_info
                      fromParm:static_cast<UInt32>(param)
                        atTime:frame];
        return Owned<FxBitmap*>(bitmap);
    };
    const double frame = wholeFrame(time);
    const Owned<FxBitmap*> first = fetch(frame);
    RasterInfo info;
    if (!describeBitmap(first.get(), m_flipRows, &info)) {
        return nullptr;
    }
    const int missingRows = static_cast<int>([m_output height]) - info.height;
    const bool fields =
        missingRows > FULL_FRAME_TOLERANCE && info.width == static_cast<int>([m_output width]);
    return weave(info, frame, {fields, 1}, fetch);
}

PluginRaster_API* PluginHost_FXPLUG_Impl::lockTemporalRaster(double time, bool fieldMode,
                                                             bool firstFieldOdd) {
    if (m_temporal == nil || m_info == nullptr) {
        return nullptr;
    }
    const Fetch fetch = [&](double frame) {
        FxBitmap* bitmap = nil;
        [m_temporal getInputBitmap:&bitmap withInfo:*m_info atTime:frame];
        return Owned<FxBitmap*>(bitmap);
    };
    const double frame = wholeFrame(time);
    const Owned<FxBitmap*> first = fetch(frame);
    RasterInfo info;
    if (!describeBitmap(first.get(), m_flipRows, &info)) {
        return nullptr;
    }
    if (isMotion() && m_info->scaleX < REDUCED_SCALE_BELOW && m_input != nil) {
        return resampled(info);
    }
    const int missingRows = static_cast<int>([m_output height]) - info.height;
    const bool fields = fieldMode && std::abs(missingRows) > FULL_FRAME_TOLERANCE;
    return weave(info, frame, {fields, firstFieldOdd ? 1 : 0}, fetch);
}

PluginRaster_API* PluginHost_FXPLUG_Impl::weave(const RasterInfo& first, double frame,
                                                const FieldRows& rows, const Fetch& fetch) {
    int rowBytes = 0;
    PluginRaster_API* const woven =
        first.height > std::numeric_limits<int>::max() / 2
            ? nullptr
            : allocRaster(first.width, rows.fields ? 2 * first.height : first.height,
                          PluginRaster_API::PIXEL_TYPE_8, rowBytes, 0);
    if (woven == nullptr) {
        return nullptr;
    }
    const RasterInfo target = infoOf(woven);
    if (!rows.fields) {
        copyRows(first, target);
        return woven;
    }
    copyRows(first, everySecondRow(target, rows.firstRow));
    const Owned<FxBitmap*> second = fetch(frame + SECOND_FIELD);
    RasterInfo info;
    if (!describeBitmap(second.get(), m_flipRows, &info)) {
        unlockTemporalRaster(woven);
        return nullptr;
    }
    copyRows(info, everySecondRow(target, 1 - rows.firstRow));
    return woven;
}

PluginRaster_API* PluginHost_FXPLUG_Impl::resampled(const RasterInfo& image) {
    int rowBytes = 0;
    int width = 0;
    int height = 0;
    getSourceLayerDimensions(width, height);
    PluginRaster_API* const raster =
        allocRaster(width, height, PluginRaster_API::PIXEL_TYPE_8, rowBytes, 0);
    if (raster != nullptr) {
        resampleNearest(image, infoOf(raster));
    }
    return raster;
}

// --- Render request, time, identity ---

bool PluginHost_FXPLUG_Impl::isQualityHigh() {
    return m_info != nullptr && m_info->qualityLevel == QUALITY_HIGH;
}

double PluginHost_FXPLUG_Impl::getScaleX() {
    return m_info == nullptr ? 1.0 : m_info->scaleX;
}

double PluginHost_FXPLUG_Impl::getScaleY() {
    if (m_info == nullptr) {
        return 1.0;
    }
    return isFieldRendering() ? m_info->scaleY * 0.5 : m_info->scaleY;
}

bool PluginHost_FXPLUG_Impl::isFieldRendering() {
    return m_info != nullptr && fieldOf(*m_info) != 0;
}

void PluginHost_FXPLUG_Impl::getFullFrameInfo(double time, int height, int& fullHeight, int& step,
                                              int& phase) {
    const bool fields = isFieldRendering();
    fullHeight = fields ? 2 * height : height;
    step = fields ? 2 : 1;
    phase = fields && time >= std::floor(time) + SECOND_FIELD_FROM ? 1 : 0;
}

int PluginHost_FXPLUG_Impl::getCurrentTime() {
    return saturateTo<int>(getTimeStep() * getFrame());
}

bool PluginHost_FXPLUG_Impl::isApplication(long code) {
    return (isFinalCutPro() && code == APPLICATION_FINAL_CUT) ||
           (isMotion() && code == APPLICATION_MOTION);
}

// Only Motion has a scene camera.
bool PluginHost_FXPLUG_Impl::hasCamera() {
    return isApplication(APPLICATION_MOTION);
}

// The minor number comes first, which is meant.
int PluginHost_FXPLUG_Impl::getHostVersionNum(int& minor, int& major) {
    minor = m_minorVersion;
    major = m_majorVersion;
    return 1;
}

// --- Parameters ---

FxPlugParameters PluginHost_FXPLUG_Impl::parametersAt(const TimeObject& time) const {
    return {m_retrieval, timeToFrame(time)};
}

FxPlugParameterWriter PluginHost_FXPLUG_Impl::writer() const {
    return {m_setting, writeTime()};
}

int PluginHost_FXPLUG_Impl::GetFloatValue(int param, int /*sub*/, const TimeObject& time,
                                          double& value) {
    return answer(parametersAt(time).getFloat(param, value));
}

int PluginHost_FXPLUG_Impl::GetAngleValue(int param, int /*sub*/, const TimeObject& time,
                                          double& degrees) {
    return answer(parametersAt(time).getAngle(param, degrees));
}

int PluginHost_FXPLUG_Impl::GetIntValue(int param, int /*sub*/, const TimeObject& time,
                                        int& value) {
    return answer(parametersAt(time).getInt(param, value));
}

int PluginHost_FXPLUG_Impl::GetUIntValue(int param, int /*sub*/, const TimeObject& time,
                                         unsigned& value) {
    auto number = static_cast<int>(value);
    const bool known = parametersAt(time).getInt(param, number);
    value = static_cast<unsigned>(number);
    return answer(known);
}

int PluginHost_FXPLUG_Impl::GetBoolValue(int param, int /*sub*/, const TimeObject& time,
                                         bool& value) {
    int byte = value ? 1 : 0;
    const bool known = parametersAt(time).getByte(param, byte);
    value = byte == 1;
    return answer(known);
}

int PluginHost_FXPLUG_Impl::GetPoint2DValue(int param, int /*sub*/, const TimeObject& time,
                                            double& x, double& y) {
    return answer(parametersAt(time).getPoint(param, x, y));
}

int PluginHost_FXPLUG_Impl::GetColorValue(int param, int /*sub*/, const TimeObject& time, double& r,
                                          double& g, double& b) {
    return answer(parametersAt(time).getColor(param, r, g, b));
}

void PluginHost_FXPLUG_Impl::SetFloatValue(int param, int /*sub*/, double& value) {
    writer().setFloat(param, value);
}

void PluginHost_FXPLUG_Impl::SetPoint2DValue(int param, int /*sub*/, double x, double y) {
    writer().setPoint(param, x, y);
}

void PluginHost_FXPLUG_Impl::SetAngleValue(int param, int /*sub*/, double& degrees) {
    writer().setAngle(param, degrees);
}

} // namespace orbel
