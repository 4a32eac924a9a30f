#pragma once

#include "doors/memory/PluginHost_MEMORY_Impl.h"
#include "host/Numeric.h"
#include "host/PluginHost_PLAIN_Impl.h"
#include "params/InstanceData.h"
#include "params/ParameterTable.h"

#include <array>
#include <map>
#include <string>
#include <utility>

/// What this program keeps of an applied effect: a shape, and the values that a user changed.
struct Effect {
    std::string shapeFile;
    std::map<int, std::array<double, 3>> values; ///< by identifier, in the units of the table
};

/// The effect's host for one frame. Docs: docs/writing-a-door.md.
class SmallestDoor final : public orbel::PluginHost_PLAIN_Impl {
public:
    /// Borrows effect and pixels until the frame is done.
    SmallestDoor(const Effect& effect, double frame, const orbel::PlainPictures& pictures)
        : PluginHost_PLAIN_Impl(pictures), m_effect(effect), m_frame(frame) {
        orbel::setUserDataPath(&m_shape, effect.shapeFile.c_str());
        setUserData(&m_shape);
    }
    SmallestDoor(const SmallestDoor&) = delete; // its shape lies within it
    SmallestDoor& operator=(const SmallestDoor&) = delete;
    ~SmallestDoor() = default;

    bool isQualityHigh() override { return true; }
    double getScaleX() override { return 1.0; }
    double getScaleY() override { return 1.0; }
    int getCurrentTime() override { return orbel::saturateTo<int>(getTimeStep() * m_frame); }

private:
    // A program with keyframes looks at the frame, which is time.getTime() / time.time_step().
    bool read(int param, const TimeObject& /*time*/, Value& value) const override {
        const orbel::ParameterRow* const row = orbel::findParameter(param);
        if (row == nullptr) {
            return false;
        }
        const auto changed = m_effect.values.find(param);
        value = changed == m_effect.values.end() ? row->defaults : changed->second;
        return true;
    }

    orbel::PluginRaster_API* makeRaster(const orbel::RasterInfo& info, PixelOwner owner) override {
        return new orbel::PluginRaster_MEMORY_Impl(info, std::move(owner));
    }

    const Effect& m_effect;
    double m_frame;
    orbel::Orbel_UserData m_shape;
};
