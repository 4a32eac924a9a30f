#include "doors/ofx/ParamsSetup.h"

#include "doors/ofx/ParameterNames.h"
#include "doors/ofx/platform/OfxNames.h"
#include "params/ParameterTable.h"

#include <cmath>
#include <string>
#include <vector>

namespace orbel::ofx {

namespace {

/// Thrown where the host refuses a parameter: without all of them there is no effect.
struct Refused {
    OfxStatus status;
};

/// How a slider moves: in steps of `increment`, shown with `digits` behind the point.
struct SliderSteps {
    double increment;
    int digits;
};

// The declared step, unless it would leave a slider fewer than twenty places: then a power of ten
// that gives it a hundred or more. One digit more than a step needs is shown.
SliderSteps stepsOf(const ParameterRow& row) {
    const double shown = row.shown().max - row.shown().min;
    double increment = row.delta;
    if (increment > shown / 20) {
        increment = std::pow(10.0, std::floor(std::log10(shown / 100)));
    }
    const int decimals = increment < 1.0 ? static_cast<int>(std::ceil(-std::log10(increment))) : 0;
    return {increment, decimals + 1};
}

class Declaration {
public:
    Declaration(const HostSuites& suites, OfxParamSetHandle set)
        : m_suites(suites),
          m_set(set),
          m_animatesToggles(suites.ofHost().getInt(HOST_PROP_BOOLEAN_ANIMATION, 0) != 0),
          m_animatesMenus(suites.ofHost().getInt(HOST_PROP_CHOICE_ANIMATION, 0) != 0) {}

    void declare(const ParameterRow& row) {
        switch (row.kind) {
        case RowKind::Custom:
            shapeFile(row);
            shapeText();
            break;
        case RowKind::Presets:
        case RowKind::Menu:
            menu(row);
            break;
        case RowKind::Float:
        case RowKind::Angle:
            number(row);
            break;
        case RowKind::Toggle: {
            const Properties props = define(PARAM_TYPE_BOOLEAN, row);
            props.setInt(PARAM_PROP_DEFAULT, row.defaults[0] == 1.0 ? 1 : 0);
            animates(row, props, m_animatesToggles);
            break;
        }
        case RowKind::Color: {
            const Properties props = define(PARAM_TYPE_RGB, row);
            setNumbers(props, PARAM_PROP_DEFAULT, row.defaults, 3);
            animates(row, props, true);
            break;
        }
        case RowKind::Point:
            point(row);
            break;
        case RowKind::GroupStart:
            group(row);
            break;
        case RowKind::GroupEnd:
            m_parent = nullptr;
            break;
        case RowKind::CompositionCamera:
            break;
        }
    }

    void page() const {
        if (m_suites.ofHost().getInt(HOST_PROP_MAX_PAGES, 1) == 0) {
            return;
        }
        const Properties props = define(PARAM_TYPE_PAGE, PAGE, "Orbel", "Orbel");
        for (std::size_t i = 0; i < m_names.size(); ++i) {
            props.setString(PARAM_PROP_PAGE_CHILD, m_names[i], static_cast<int>(i));
        }
    }

private:
    Properties define(const char* type, const char* name, const char* label,
                      const std::string& longLabel) const {
        OfxPropertySetHandle handle = nullptr;
        const OfxStatus status = m_suites.parameter->paramDefine(m_set, type, name, &handle);
        if (status != STAT_OK) {
            throw Refused{status};
        }
        Properties props = m_suites.properties(handle);
        // The label resets the other two.
        props.setString(PROP_LABEL, label);
        props.setString(PROP_SHORT_LABEL, label);
        props.setString(PROP_LONG_LABEL, longLabel.c_str());
        return props;
    }

    // A parameter of the group at hand, on the page.
    Properties member(const char* type, const char* name, const char* label,
                      const std::string& longLabel) {
        Properties props = define(type, name, label, longLabel);
        if (m_parent != nullptr) {
            props.setString(PARAM_PROP_PARENT, m_parent);
        }
        m_names.push_back(name);
        return props;
    }

    Properties define(const char* type, const ParameterRow& row) {
        const Properties props = member(type, parameterName(row.id), row.name, fullName(row));
        if ((row.flags & PARAM_DISABLED) != 0) {
            props.setInt(PARAM_PROP_ENABLED, 0);
        }
        return props;
    }

    // `possible` says whether the host animates values of this kind.
    static void animates(const ParameterRow& row, const Properties& props, bool possible) {
        props.setInt(PARAM_PROP_ANIMATES,
                     possible && (row.flags & PARAM_NOT_ANIMATABLE) == 0 ? 1 : 0);
    }

    static void setNumbers(const Properties& props, const char* name,
                           const std::array<double, 3>& values, int count) {
        for (int i = 0; i < count; ++i) {
            props.setDouble(name, values[static_cast<std::size_t>(i)], i);
        }
    }

    void shapeFile(const ParameterRow& row) {
        const Properties props = define(PARAM_TYPE_STRING, row);
        props.setString(PARAM_PROP_STRING_MODE, STRING_IS_FILE_PATH);
        props.setInt(PARAM_PROP_FILE_EXISTS, 1);
        props.setString(PARAM_PROP_DEFAULT, "");
        props.setString(PARAM_PROP_HINT, "An SVG file. A preset comes before it.");
    }

    void shapeText() {
        const Properties props = member(PARAM_TYPE_STRING, SHAPE_TEXT, "Shape Text", "Shape Text");
        props.setString(PARAM_PROP_STRING_MODE, STRING_IS_MULTI_LINE);
        props.setString(PARAM_PROP_DEFAULT, "");
        props.setString(PARAM_PROP_HINT, "The contents of an SVG file, for where there is no such "
                                         "file: used when \"Shape\" names none that can be read.");
    }

    void menu(const ParameterRow& row) {
        const Properties props = define(PARAM_TYPE_CHOICE, row);
        const std::vector<std::string> entries = menuEntries(row);
        for (std::size_t i = 0; i < entries.size(); ++i) {
            props.setString(PARAM_PROP_CHOICE_OPTION, entries[i].c_str(), static_cast<int>(i));
        }
        props.setInt(PARAM_PROP_DEFAULT, static_cast<int>(row.defaults[0]));
        animates(row, props, m_animatesMenus);
    }

    // The displayed range comes last: setting a limit resets it.
    void number(const ParameterRow& row) {
        const Properties props = define(PARAM_TYPE_DOUBLE, row);
        props.setString(PARAM_PROP_DOUBLE_TYPE,
                        row.kind == RowKind::Angle ? DOUBLE_TYPE_ANGLE : DOUBLE_TYPE_PLAIN);
        props.setDouble(PARAM_PROP_DEFAULT, row.defaults[0]);
        props.setDouble(PARAM_PROP_MIN, row.bounds().min);
        props.setDouble(PARAM_PROP_MAX, row.bounds().max);
        props.setDouble(PARAM_PROP_DISPLAY_MIN, row.shown().min);
        props.setDouble(PARAM_PROP_DISPLAY_MAX, row.shown().max);
        const SliderSteps steps = stepsOf(row);
        props.setDouble(PARAM_PROP_INCREMENT, steps.increment);
        props.setInt(PARAM_PROP_DIGITS, steps.digits);
        animates(row, props, true);
    }

    // Fractions of the frame, y upwards as everywhere in this kind of host. Plain numbers: a host
    // would scale positions by the size of the project.
    void point(const ParameterRow& row) {
        const Properties props = define(PARAM_TYPE_DOUBLE_2D, row);
        props.setString(PARAM_PROP_DOUBLE_TYPE, DOUBLE_TYPE_PLAIN);
        setNumbers(props, PARAM_PROP_DEFAULT, {row.defaults[0], 1.0 - row.defaults[1], 0.0}, 2);
        setNumbers(props, PARAM_PROP_DISPLAY_MIN, {0.0, 0.0, 0.0}, 2);
        setNumbers(props, PARAM_PROP_DISPLAY_MAX, {1.0, 1.0, 0.0}, 2);
        props.setDouble(PARAM_PROP_INCREMENT, 0.001);
        props.setInt(PARAM_PROP_DIGITS, 4);
        props.setString(PARAM_PROP_HINT, "Fractions of the frame from its lower left corner.");
        animates(row, props, true);
    }

    void group(const ParameterRow& row) {
        const char* const name = parameterName(row.id);
        const Properties props = define(PARAM_TYPE_GROUP, name, row.name, row.name);
        props.setInt(PARAM_PROP_GROUP_OPEN, (row.flags & PARAM_COLLAPSED) == 0 ? 1 : 0);
        m_parent = name;
    }

    const HostSuites& m_suites;
    OfxParamSetHandle m_set;
    bool m_animatesToggles;
    bool m_animatesMenus;
    const char* m_parent = nullptr;
    std::vector<const char*> m_names;
};

} // namespace

OfxStatus declareParameters(const HostSuites& suites, OfxImageEffectHandle descriptor) try {
    OfxParamSetHandle set = nullptr;
    if (suites.effect->getParamSet(descriptor, &set) != STAT_OK || set == nullptr) {
        return STAT_ERR_BAD_HANDLE;
    }
    Declaration declaration(suites, set);
    for (const ParameterRow& row : parameterTable()) {
        declaration.declare(row);
    }
    declaration.page();
    return STAT_OK;
} catch (const Refused& refused) {
    return refused.status;
}

} // namespace orbel::ofx
