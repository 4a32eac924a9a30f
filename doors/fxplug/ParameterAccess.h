#pragma once

#include "doors/fxplug/FxPlugInterface.h"
#include "host/ParameterReader.h"

namespace orbel {

/// Reads parameters through the host's selectors at one frame and converts what the host delivers:
/// radians become degrees, and the upward points of Motion downward ones. What the host writes is
/// taken whatever it answers, and what it does not write stays as it was; a read gives its answer.
class FxPlugParameters {
public:
    /// Borrows `api`; with nil nothing can be read.
    FxPlugParameters(id<FxParameterRetrievalAPI> api, double frame) : m_api(api), m_frame(frame) {}

    bool getFloat(int param, double& value) const;
    bool getAngle(int param, double& degrees) const;
    /// A toggle as the byte that the host delivers; on is exactly 1.
    bool getByte(int param, int& value) const;
    bool getInt(int param, int& value) const;
    bool getColor(int param, double& red, double& green, double& blue) const;
    bool getPoint(int param, double& x, double& y) const;

private:
    id<FxParameterRetrievalAPI> m_api;
    double m_frame;
};

/// The same, as the core asks for it.
class FxPlugParameterReader final : public ParameterReader {
public:
    FxPlugParameterReader(id<FxParameterRetrievalAPI> api, double frame)
        : m_parameters(api, frame) {}
    void readFloat(int param, double& value) override { m_parameters.getFloat(param, value); }
    void readAngle(int param, double& degrees) override { m_parameters.getAngle(param, degrees); }
    void readToggle(int param, bool& value) override;
    void readMenu(int param, int& index) override { m_parameters.getInt(param, index); }
    void readColor(int param, double& red, double& green, double& blue) override {
        m_parameters.getColor(param, red, green, blue);
    }
    void readPoint(int param, double& x, double& y) override { m_parameters.getPoint(param, x, y); }

private:
    FxPlugParameters m_parameters;
};

/// Writes parameters at one frame, converting the other way round. Answers whether the host took
/// the value.
class FxPlugParameterWriter {
public:
    /// Borrows `api`; with nil nothing is written.
    FxPlugParameterWriter(id<FxParameterSettingAPI> api, double frame)
        : m_api(api), m_frame(frame) {}

    bool setFloat(int param, double value) const;
    bool setAngle(int param, double degrees) const;
    bool setInt(int param, int value) const;
    bool setBool(int param, bool value) const;
    bool setColor(int param, double red, double green, double blue) const;
    bool setPoint(int param, double x, double y) const;

private:
    id<FxParameterSettingAPI> m_api;
    double m_frame;
};

} // namespace orbel
