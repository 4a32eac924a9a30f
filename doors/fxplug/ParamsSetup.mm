#include "doors/fxplug/ParamsSetup.h"

#include "doors/fxplug/PluginHost_FXPLUG_Impl.h"
#include "doors/fxplug/Vo_Orbel_CustomParam.h"
#include "params/InstanceData.h"
#include "params/ParameterTable.h"
#include "shapes/ShapeTable.h"

namespace orbel {

namespace {

constexpr const char* PLUG_IN_FOLDER = "/Library/Plug-ins/FxPlug";

// Within this door every record is a host object of this door.
PluginHost_FXPLUG_Impl* recordOf(PluginHost_API* host) {
    return static_cast<PluginHost_FXPLUG_Impl*>(host->getFXPLUGHost());
}

NSString* text(const std::string& utf8) {
    return [NSString stringWithUTF8String:utf8.c_str()];
}

/// Sends the selector of each kind of row.
class Declaration {
public:
    Declaration(PluginHost_API* host, id<FxParameterCreationAPI> api) : m_host(host), m_api(api) {}

    void declare(const ParameterRow& row) const {
        switch (row.kind) {
        case RowKind::Custom:
            AddPathProperty(m_host);
            break;
        case RowKind::Presets:
            AddPathPresetProperty(m_host);
            break;
        case RowKind::Menu:
            menu(row);
            break;
        case RowKind::Float:
            slider(row);
            break;
        case RowKind::Toggle:
            [m_api addToggleButtonWithName:text(row.name)
                                    parmId:parm(row)
                              defaultValue:row.defaults[0] == 1.0 ? YES : NO
                                 parmFlags:flags(row)];
            break;
        case RowKind::Color:
            color(row);
            break;
        case RowKind::Point:
            [m_api addPointParameterWithName:text(row.name)
                                      parmId:parm(row)
                                    defaultX:row.defaults[0]
                                    defaultY:row.defaults[1]
                                   parmFlags:flags(row)];
            break;
        case RowKind::Angle:
            [m_api addAngleSliderWithName:text(row.name)
                                   parmId:parm(row)
                             defaultValue:row.defaults[0]
                             parameterMin:row.bounds().min
                             parameterMax:row.bounds().max
                                parmFlags:flags(row)];
            break;
        case RowKind::GroupStart:
            [m_api startParameterSubGroup:text(row.name) parmId:parm(row) parmFlags:flags(row)];
            break;
        case RowKind::GroupEnd:
            [m_api endParameterSubGroup];
            break;
        case RowKind::CompositionCamera:
            AddCompCameraParam(m_host);
            break;
        }
    }

    void menu(const ParameterRow& row) const {
        const std::vector<std::string> names = menuEntries(row);
        NSMutableArray* const entries = [NSMutableArray arrayWithCapacity:names.size()];
        for (const std::string& name : names) {
            [entries addObject:text(name)];
        }
        [m_api addPopupMenuWithName:text(row.name)
                             parmId:parm(row)
                       defaultValue:static_cast<UInt32>(row.defaults[0])
                        menuEntries:entries
                          parmFlags:flags(row)];
    }

    void path(const ParameterRow& row) const {
        const Orbel_UserData empty;
        Vo_Orbel_CustomParam* const value =
            [[[Vo_Orbel_CustomParam alloc] initWith:empty.path] autorelease];
        [m_api addCustomParameterWithName:text(row.name)
                                   parmId:parm(row)
                             defaultValue:value
                                parmFlags:flags(row)];
    }

private:
    static UInt32 parm(const ParameterRow& row) { return static_cast<UInt32>(row.id); }
    static FxParameterFlags flags(const ParameterRow& row) {
        return static_cast<FxParameterFlags>(row.flags);
    }

    void slider(const ParameterRow& row) const {
        [m_api addFloatSliderWithName:text(row.name)
                               parmId:parm(row)
                         defaultValue:row.defaults[0]
                         parameterMin:row.bounds().min
                         parameterMax:row.bounds().max
                            sliderMin:row.shown().min
                            sliderMax:row.shown().max
                                delta:row.delta
                            parmFlags:flags(row)];
    }

    void color(const ParameterRow& row) const {
        [m_api addColorParameterWithName:text(row.name)
                                  parmId:parm(row)
                              defaultRed:row.defaults[0]
                            defaultGreen:row.defaults[1]
                             defaultBlue:row.defaults[2]
                               parmFlags:flags(row)];
    }

    PluginHost_API* m_host;
    id<FxParameterCreationAPI> m_api;
};

} // namespace

int ParamsSetup(PluginHost_API* host) {
    PluginHost_FXPLUG_Impl* const record = recordOf(host);
    if (record == nullptr) {
        return 1;
    }
    const Declaration declaration(host, record->creation());
    for (const ParameterRow& row : parameterTable()) {
        declaration.declare(row);
    }
    return 1;
}

int AddPathProperty(PluginHost_API* host) {
    PluginHost_FXPLUG_Impl* const record = recordOf(host);
    if (record == nullptr) {
        return 1;
    }
    Declaration(host, record->creation()).path(*findParameter(PARAM_SHAPE));
    return 0;
}

int AddPathPresetProperty(PluginHost_API* host) {
    PluginHost_FXPLUG_Impl* const record = recordOf(host);
    if (record == nullptr) {
        return 1;
    }
    buildStaticSVGShapeInfo(PLUG_IN_FOLDER);
    Declaration(host, record->creation()).menu(*findParameter(PARAM_PRESETS));
    return 0;
}

int AddCompCameraParam(PluginHost_API* /*host*/) {
    return 0;
}

int AddMBlurPopup(PluginHost_API* /*host*/) {
    return 0;
}

} // namespace orbel
