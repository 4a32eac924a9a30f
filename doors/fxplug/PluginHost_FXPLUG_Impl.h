#pragma once

#include "doors/fxplug/FxPlugInterface.h"
#include "doors/fxplug/Owned.h"
#include "doors/fxplug/ParameterAccess.h"
#include "doors/fxplug/PluginRaster_FXPLUG_Impl.h"
#include "host/FxPlugHost.h"
#include "host/PluginHost_COMMON_Impl.h"

#include <functional>

namespace orbel {

/// The host of one call: wraps what an FxPlug host handed over. Borrows everything and lives on the
/// stack of that call. It is its own FxPlug record.
class PluginHost_FXPLUG_Impl final : public PluginHost_COMMON_Impl, public FXPLUGHost {
public:
    /// Everything may be nil or null: `info` outside rendering, the creation interface outside
    /// declaration, the temporal and setting interfaces where the call has no use for them.
    PluginHost_FXPLUG_Impl(id<FxParameterCreationAPI> creation,
                           id<FxParameterRetrievalAPI> retrieval, FxBitmap* input, FxBitmap* output,
                           const FxRenderInfo* info, id<FxTemporalImageAPI> temporal,
                           id<FxParameterSettingAPI> setting);

    void set3DApi(id<Fx3DAPI> api) { m_threeD = api; }
    /// Its `currentTime` is when parameters are written.
    void setActionApi(id<FxCustomParameterActionAPI> api) { m_action = api; }
    /// The frame where there is no render request.
    void setFallbackFrame(double frame) { m_fallbackFrame = frame; }
    /// Asks the host for its version; without an answer the stored one stays.
    void setHostVersionNum(id<PROAPIAccessing> manager);

    [[nodiscard]] id<FxParameterCreationAPI> creation() const { return m_creation; }
    [[nodiscard]] id<FxParameterRetrievalAPI> retrieval() const { return m_retrieval; }
    [[nodiscard]] id<FxParameterSettingAPI> setting() const { return m_setting; }
    /// The frame being rendered; the second field of frame i is i + 0.5.
    [[nodiscard]] double getFrame() const;
    [[nodiscard]] static double timeToFrame(const TimeObject& time);
    /// When parameters are written: the frame where there is no action.
    [[nodiscard]] double writeTime() const;

    // --- Host record ---
    ParameterReader& reader() override;
    int readPreset() override;
    void readShapeFile(Orbel_UserData* data) override;
    void writeShapeFile(const Orbel_UserData* data) override;
    int cameraMatrix(long time, long timeScale, Vx_Matrix4* camera, double* zoom) override;

    // --- Images ---
    int getOutputWidth() override;
    int getOutputHeight() override;
    PluginRaster_API* getInputRaster(int layer) override;
    PluginRaster_API* getOutputRaster() override;
    /// `rowBytes` becomes 0, which is meant.
    PluginRaster_API* allocRaster(int width, int height, PixelType type, int& rowBytes,
                                  int flags) override;
    PluginRaster_API* allocRaster(RasterInfo* info) override;
    void deallocRaster(PluginRaster_API* raster) override;
    void getInputRasterInfo(int layer, RasterInfo* info) override;
    void getRasterInfo(PluginRaster_API* raster, RasterInfo* info) override;
    void getSourceLayerDimensions(int& width, int& height) override;
    void dependOnOrigin() override { m_flipRows = true; }
    /// `time` in frames. A host that delivers single fields has both woven into a full frame.
    PluginRaster_API* checkoutLayer(int param, double time, int flags) override;
    PluginRaster_API* checkoutLayer(int param, int flags) override;
    /// The input at another frame. With `fieldMode` the field at `time` fills every second row,
    /// from row 1 on when `firstFieldOdd` is set, and the next field the others.
    PluginRaster_API* lockTemporalRaster(double time, bool fieldMode, bool firstFieldOdd) override;

    // --- Render request, time, identity ---
    bool isQualityHigh() override;
    double getScaleX() override;
    double getScaleY() override;
    bool isFieldRendering() override;
    void getFullFrameInfo(double time, int height, int& fullHeight, int& step, int& phase) override;
    int getCurrentTime() override;
    bool isApplication(long fourCC) override;
    bool hasCamera() override;
    int getHostVersionNum(int& minor, int& major) override;
    FXPLUGHost* getFXPLUGHost() override { return this; }

    // --- Parameters ---
    int GetFloatValue(int param, int sub, const TimeObject& time, double& value) override;
    int GetAngleValue(int param, int sub, const TimeObject& time, double& degrees) override;
    int GetIntValue(int param, int sub, const TimeObject& time, int& value) override;
    int GetUIntValue(int param, int sub, const TimeObject& time, unsigned& value) override;
    int GetBoolValue(int param, int sub, const TimeObject& time, bool& value) override;
    int GetPoint2DValue(int param, int sub, const TimeObject& time, double& x, double& y) override;
    int GetColorValue(int param, int sub, const TimeObject& time, double& r, double& g,
                      double& b) override;
    void SetFloatValue(int param, int sub, double& value) override;
    void SetPoint2DValue(int param, int sub, double x, double y) override;
    void SetAngleValue(int param, int sub, double& degrees) override;

private:
    void describeOutput(RasterInfo* info) override;

    using Fetch = std::function<Owned<FxBitmap*>(double frame)>;
    struct FieldRows {
        bool fields;  ///< two fields are woven
        int firstRow; ///< where the first one starts
    };
    PluginRaster_API* weave(const RasterInfo& first, double frame, const FieldRows& rows,
                            const Fetch& fetch);
    PluginRaster_API* resampled(const RasterInfo& image);
    [[nodiscard]] FxPlugParameters parametersAt(const TimeObject& time) const;
    [[nodiscard]] FxPlugParameterWriter writer() const;

    id<FxParameterCreationAPI> m_creation;
    id<FxParameterRetrievalAPI> m_retrieval;
    FxBitmap* m_input;
    FxBitmap* m_output;
    const FxRenderInfo* m_info;
    id<FxTemporalImageAPI> m_temporal;
    id<FxParameterSettingAPI> m_setting;
    double m_fallbackFrame = 0.0;
    bool m_flipRows = true;
    int m_majorVersion = 0;
    int m_minorVersion = 0;
    id<Fx3DAPI> m_threeD = nil;
    id<FxCustomParameterActionAPI> m_action = nil;
    FxPlugParameterReader m_reader;
};

} // namespace orbel
