#include "doors/ofx/platform/OfxNames.h"
#include "tests/doors/ofx/LoadedPlugin.h"

#include <gmock/gmock.h>

#include <cstring>
#include <fstream>
#include <set>
#include <sstream>

namespace orbel::ofxtest {
namespace {

using testing::IsEmpty;

std::string words(const std::vector<PropertyValue>& values) {
    std::ostringstream out;
    for (const PropertyValue& value : values) {
        if (const auto* const text = std::get_if<std::string>(&value)) {
            out << " '" << *text << "'";
        } else if (const auto* const number = std::get_if<double>(&value)) {
            out << ' ' << *number;
        } else if (const auto* const whole = std::get_if<int>(&value)) {
            out << ' ' << *whole;
        }
    }
    return out.str();
}

// One line for each parameter, with everything that was said about it but how to explain it.
std::string declarations(const Effect& effect) {
    std::ostringstream out;
    for (const std::string& name : effect.order) {
        const Param& param = *effect.params.at(name);
        out << name << ' ' << param.type.substr(std::string("OfxParamType").size());
        for (const auto& [property, values] : param.properties.values) {
            if (property != ofx::PARAM_PROP_HINT && property != ofx::PARAM_PROP_PAGE_CHILD) {
                out << ' ' << property.substr(property.rfind("Prop") + 4) << words(values);
            }
        }
        out << '\n';
    }
    return out.str();
}

class OfxDescription : public testing::TestWithParam<const char*> {
protected:
    TestHost m_host;
    LoadedPlugin m_plugin{ORBEL_OFX_BINARY, &m_host};
};

TEST_P(OfxDescription, setsNothingTheInterfaceDoesNotKnow) {
    OfxStatus status = -1;
    const auto effect = m_plugin.describe(GetParam(), &status);
    EXPECT_EQ(status, ofx::STAT_OK);
    EXPECT_THAT(effect->faults(), IsEmpty());
    EXPECT_EQ(effect->clips.size(), 2U);
    for (const auto& [name, clip] : effect->clips) {
        EXPECT_EQ(clip->properties.text(ofx::PROP_SUPPORTED_COMPONENTS), ofx::COMPONENT_RGBA);
    }
    const std::vector<PropertyValue> depths{std::string("OfxBitDepthByte"),
                                            std::string("OfxBitDepthShort"),
                                            std::string("OfxBitDepthFloat")};
    EXPECT_EQ(effect->properties.values[ofx::PROP_SUPPORTED_DEPTHS], depths);
    EXPECT_EQ(effect->properties.text(ofx::PROP_LABEL), "Orbel");
}

// Saved projects know the parameters by these names and the menu entries by their places: lines may
// be added, never changed.
TEST_P(OfxDescription, declaresTheParametersOfTheList) {
    std::ifstream file(ORBEL_OFX_DECLARATIONS);
    std::istringstream declared(declarations(*m_plugin.describe(GetParam())));
    std::string expected;
    std::string actual;
    while (std::getline(file, expected)) {
        std::getline(declared, actual);
        EXPECT_EQ(actual, expected);
    }
    EXPECT_FALSE(std::getline(declared, actual)) << actual;
}

TEST_P(OfxDescription, laysEveryParameterOutOnThePage) {
    const auto effect = m_plugin.describe(GetParam());
    std::vector<PropertyValue> children;
    for (const std::string& name : effect->order) {
        const std::string& type = effect->params.at(name)->type;
        if (type != ofx::PARAM_TYPE_GROUP && type != ofx::PARAM_TYPE_PAGE) {
            children.emplace_back(name);
        }
    }
    EXPECT_EQ(effect->params.at("page")->properties.values[ofx::PARAM_PROP_PAGE_CHILD], children);
}

INSTANTIATE_TEST_SUITE_P(Contexts, OfxDescription,
                         testing::Values(ofx::CONTEXT_FILTER, ofx::CONTEXT_GENERAL),
                         [](const auto& context) { return std::string(context.param).substr(21); });

TEST(OfxPlugin, isWhoItAlwaysWas) {
    TestHost host;
    const LoadedPlugin loaded(ORBEL_OFX_BINARY, &host);
    EXPECT_STREQ(loaded.plugin().pluginApi, "OfxImageEffectPluginAPI");
    EXPECT_EQ(loaded.plugin().apiVersion, 1);
    EXPECT_STREQ(loaded.plugin().pluginIdentifier, "org.orbel.Orbel");
    EXPECT_EQ(loaded.plugin().pluginVersionMajor, 1U);
}

TEST(OfxPlugin, refusesWhatItCannotDo) {
    TestHost host;
    const LoadedPlugin loaded(ORBEL_OFX_BINARY, &host);
    OfxStatus status = -1;
    const auto generator = loaded.describe("OfxImageEffectContextGenerator", &status);
    EXPECT_EQ(status, ofx::STAT_ERR_UNSUPPORTED);
    // A host that takes no parameters, because it has them already.
    const auto known = loaded.describe(ofx::CONTEXT_FILTER);
    PropertySet arguments;
    arguments.set(ofx::PROP_CONTEXT, {std::string(ofx::CONTEXT_FILTER)});
    EXPECT_EQ(loaded.call(ofx::ACTION_DESCRIBE_IN_CONTEXT, known.get(), &arguments),
              ofx::STAT_ERR_EXISTS);
    EXPECT_EQ(loaded.call("OfxActionNoSuchThing"), ofx::STAT_REPLY_DEFAULT);
    EXPECT_EQ(loaded.call(nullptr), ofx::STAT_REPLY_DEFAULT);
    EXPECT_EQ(loaded.call(ofx::ACTION_RENDER), ofx::STAT_ERR_BAD_HANDLE);
    EXPECT_EQ(loaded.call(ofx::ACTION_DESCRIBE), ofx::STAT_ERR_BAD_HANDLE);
}

TEST(OfxPlugin, needsThreeSuites) {
    for (const char* const suite :
         {"OfxPropertySuite", "OfxImageEffectSuite", "OfxParameterSuite"}) {
        TestHost host;
        host.missingSuites.insert(suite);
        EXPECT_EQ(LoadedPlugin(ORBEL_OFX_BINARY, &host).loaded(),
                  ofx::STAT_ERR_MISSING_HOST_FEATURE)
            << suite;
    }
    TestHost host;
    const LoadedPlugin loaded(ORBEL_OFX_BINARY, &host);
    loaded.plugin().setHost(nullptr);
    EXPECT_EQ(loaded.call(ofx::ACTION_LOAD), ofx::STAT_ERR_MISSING_HOST_FEATURE);
}

// What a host leaves out of a suite is only missed where the plug-in calls it.
template<class Suite>
void expectNeeded(const char* name, const Suite* whole, const std::set<std::size_t>& needed) {
    for (std::size_t i = 0; i < sizeof(Suite) / sizeof(void*); ++i) {
        Suite suite = *whole;
        std::memset(reinterpret_cast<char*>(&suite) + i * sizeof(void*), 0, sizeof(void*));
        TestHost host;
        host.suites[name] = &suite;
        const LoadedPlugin loaded(ORBEL_OFX_BINARY, &host);
        EXPECT_EQ(loaded.loaded(),
                  needed.contains(i) ? ofx::STAT_ERR_MISSING_HOST_FEATURE : ofx::STAT_OK)
            << name << ' ' << i;
        if (loaded.loaded() == ofx::STAT_OK) {
            const HostedInstance instance(&loaded, ofx::CONTEXT_FILTER);
            EXPECT_EQ(instance.created(), ofx::STAT_OK);
        }
    }
}

TEST(OfxPlugin, needsTheFunctionsThatItCalls) {
    expectNeeded("OfxPropertySuite", propertySuite(), {0, 1, 2, 3, 8, 9, 10, 11});
    expectNeeded("OfxImageEffectSuite", imageEffectSuite(), {0, 1, 2, 3, 4, 5, 6, 7, 8});
    expectNeeded("OfxParameterSuite", parameterSuite(), {0, 1, 3, 5, 8});
}

// Without an answer to "how many pages" there is one; with none there is none.
TEST(OfxPlugin, makesDoWithTheHostsLimits) {
    TestHost host;
    host.properties.set(ofx::HOST_PROP_MAX_PAGES, {0});
    host.properties.set(ofx::HOST_PROP_BOOLEAN_ANIMATION, {0});
    host.properties.set(ofx::HOST_PROP_CHOICE_ANIMATION, {0});
    const LoadedPlugin loaded(ORBEL_OFX_BINARY, &host);
    const auto effect = loaded.describe(ofx::CONTEXT_FILTER);
    EXPECT_EQ(effect->params.count("page"), 0U);
    for (const auto& [name, param] : effect->params) {
        if (param->type == ofx::PARAM_TYPE_BOOLEAN || param->type == ofx::PARAM_TYPE_CHOICE) {
            EXPECT_EQ(param->properties.get<int>(ofx::PARAM_PROP_ANIMATES, 0, 1), 0) << name;
        }
    }
}

TEST(OfxPlugin, comesAndGoesAnyNumberOfTimes) {
    TestHost host;
    for (int i = 0; i < 50; ++i) {
        const LoadedPlugin loaded(ORBEL_OFX_BINARY, &host);
        EXPECT_EQ(loaded.loaded(), ofx::STAT_OK);
        EXPECT_EQ(loaded.call(ofx::ACTION_LOAD), ofx::STAT_OK); // again, without having left
        EXPECT_EQ(loaded.call(ofx::ACTION_UNLOAD), ofx::STAT_OK);
        EXPECT_EQ(loaded.call(ofx::ACTION_DESCRIBE), ofx::STAT_ERR_MISSING_HOST_FEATURE);
        EXPECT_EQ(loaded.call(ofx::ACTION_LOAD), ofx::STAT_OK);
        const HostedInstance instance(&loaded, ofx::CONTEXT_FILTER);
        EXPECT_EQ(instance.created(), ofx::STAT_OK);
    }
}

} // namespace
} // namespace orbel::ofxtest
