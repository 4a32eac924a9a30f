#pragma once

#include "tests/doors/ofx/Stage.h"

#include <gmock/gmock.h>

namespace orbel::ofxtest {

/// A host with the bundle, and shots through both hosts.
class OfxRender : public testing::Test {
protected:
    void expectFrame(const Shot& shot, const Layouts& layouts) {
        Stage stage(&m_plugin, shot, layouts);
        expectFrame(stage, shot);
    }
    static void expectFrame(Stage& stage, const Shot& shot) {
        EXPECT_EQ(stageRender(stage, shot, shot.rendered()), 0);
    }
    static OfxStatus stageRender(Stage& stage, const Shot& shot, const MemoryImage& expected) {
        const OfxStatus status = stage.render();
        EXPECT_TRUE(shows(stage.output, expected.info(), shot.frame, stage.output.layout().bounds));
        EXPECT_THAT(stage.instance.effect().faults(), testing::IsEmpty());
        return status;
    }

    TestHost m_host;
    LoadedPlugin m_plugin{ORBEL_OFX_BINARY, &m_host};
};

} // namespace orbel::ofxtest
