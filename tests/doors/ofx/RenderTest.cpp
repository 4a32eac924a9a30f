#include "doors/ofx/platform/OfxNames.h"
#include "params/ParameterTable.h"
#include "tests/doors/ofx/RenderFixture.h"
#include "tests/support/Pictures.h"

#include <algorithm>
#include <cstring>

namespace orbel::ofxtest {
namespace {

constexpr RasterFormat FORMATS[] = {RF_RGBA8, RF_RGBA16, RF_RGBA32F};

TEST_F(OfxRender, everyDepthAndRowLayoutAndPlaceGivesTheCoresPicture) {
    const OfxRectI frames[] = {{0, 0, 52, 38}, {-17, 5, 34, 44}, {1000, -900, 1033, -851}};
    for (const RasterFormat format : FORMATS) {
        for (const OfxRectI& frame : frames) {
            // Odd paddings leave rows that are not aligned for their components.
            for (const int padding : {0, 3, 48}) {
                Shot shot;
                shot.format = format;
                shot.frame = frame;
                Layouts layouts(shot);
                layouts.source.padding = padding;
                layouts.source.negative = padding == 3;
                layouts.output.padding = 51 - padding;
                layouts.output.negative = padding != 48;
                expectFrame(shot, layouts);
                // Something is drawn, or nothing of this would mean much.
                EXPECT_FALSE(test::samePicture(shot.rendered().info(), shot.picture().info(), 0.1));
            }
        }
    }
}

TEST_F(OfxRender, tilesAreTheWholeFrame) {
    for (const RasterFormat format : FORMATS) {
        Shot shot;
        shot.format = format;
        shot.frame = {-5, 7, 47, 45};
        const MemoryImage expected = shot.rendered();
        for (const OfxRectI& tile :
             {OfxRectI{-5, 7, 20, 26}, {20, 7, 47, 26}, {-5, 26, 47, 45}, {11, 30, 12, 31}}) {
            Layouts layouts(shot);
            layouts.source.bounds = layouts.output.bounds = tile; // as small as the window allows
            Stage small(&m_plugin, shot, layouts);
            EXPECT_EQ(stageRender(small, shot, expected), ofx::STAT_OK);
            Stage large(&m_plugin, shot, Layouts(shot)); // a window of a whole image
            large.setWindow(tile);
            EXPECT_EQ(large.render(), ofx::STAT_OK);
            EXPECT_TRUE(shows(large.output, expected.info(), shot.frame, tile));
        }
    }
}

TEST_F(OfxRender, everyStateOfAlphaIsServedAsItIs) {
    for (const RasterFormat format : FORMATS) {
        for (const double end : {100.0, 0.0}) {
            for (const SourceAlpha source :
                 {SourceAlpha::Premultiplied, SourceAlpha::Straight, SourceAlpha::Opaque}) {
                for (const OutputAlpha output :
                     {OutputAlpha::Premultiplied, OutputAlpha::Straight}) {
                    Shot shot;
                    shot.format = format;
                    shot.alpha = {source, output};
                    shot.set(PARAM_END, end);
                    expectFrame(shot, Layouts(shot));
                }
            }
        }
    }
}

// A host may keep its picture for other effects, and may even hand it out as the output.
TEST_F(OfxRender, theSourceIsNeverChanged) {
    for (const SourceAlpha alpha : {SourceAlpha::Straight, SourceAlpha::Premultiplied}) {
        Shot shot;
        shot.alpha = {alpha, OutputAlpha::Straight};
        const MemoryImage picture = shot.picture();
        const MemoryImage expected = shot.rendered();
        Stage stage(&m_plugin, shot, Layouts(shot));
        EXPECT_EQ(stageRender(stage, shot, expected), ofx::STAT_OK);
        EXPECT_TRUE(shows(stage.source, picture.info(), shot.frame, shot.frame));

        Stage inPlace(&m_plugin, shot, Layouts(shot));
        inPlace.instance.clip("Output").image = inPlace.instance.clip("Source").image;
        EXPECT_EQ(inPlace.render(), ofx::STAT_OK);
        EXPECT_TRUE(shows(inPlace.source, expected.info(), shot.frame, shot.frame));
    }
}

TEST_F(OfxRender, aLayerAloneInAnOpaqueOutputLiesOverBlack) {
    Shot shot;
    shot.format = RF_RGBA32F;
    shot.set(PARAM_TRANSFER_MODE, 0);
    Layouts layouts(shot);
    layouts.output.alpha = ofx::IMAGE_OPAQUE;
    const MemoryImage expected = shot.rendered();
    for (int y = 0; y < shot.height(); ++y) {
        for (int x = 0; x < shot.width(); ++x) {
            const float one = 1.0F;
            std::memcpy(expected.info().row(y) + std::ptrdiff_t{16} * x + 12, &one, sizeof one);
        }
    }
    Stage stage(&m_plugin, shot, layouts);
    EXPECT_EQ(stageRender(stage, shot, expected), ofx::STAT_OK);
}

TEST_F(OfxRender, sourcesOfOtherSizesLieWhereTheyBelong) {
    for (const OfxRectI& region :
         {OfxRectI{-10, -10, 70, 60}, {10, 5, 30, 20}, {30, -20, 90, 20}, {500, 500, 520, 520}}) {
        Shot shot;
        Layouts layouts(shot);
        layouts.source.bounds = layouts.source.region = region;
        Stage stage(&m_plugin, shot, layouts);
        Shot other = shot;
        other.frame = region;
        const MemoryImage source = other.picture();
        stage.source.takeFrom(source.info());
        // The same by hand: the source's pixels in a frame of the output's size.
        const MemoryImage input(shot.width(), shot.height(), shot.format, RowLayout{});
        for (int y = shot.frame.y1; y < shot.frame.y2; ++y) {
            for (int x = shot.frame.x1; x < shot.frame.x2; ++x) {
                if (x >= region.x1 && x < region.x2 && y >= region.y1 && y < region.y2) {
                    std::memcpy(input.info().row(shot.frame.y2 - 1 - y) +
                                    std::ptrdiff_t{4} * (x - shot.frame.x1),
                                source.info().row(region.y2 - 1 - y) +
                                    std::ptrdiff_t{4} * (x - region.x1),
                                4);
                }
            }
        }
        const MemoryImage expected = shot.rendered(input);
        EXPECT_EQ(stage.render(), ofx::STAT_OK);
        EXPECT_TRUE(shows(stage.output, expected.info(), shot.frame, shot.frame));
    }
}

// A window beyond the effect's own region is transparent black there.
TEST_F(OfxRender, outsideTheFrameThereIsNothing) {
    Shot shot;
    Layouts layouts(shot);
    layouts.output.bounds = {-20, -10, 80, 60};
    Stage stage(&m_plugin, shot, layouts);
    EXPECT_EQ(stageRender(stage, shot, shot.rendered()), ofx::STAT_OK);
}

TEST_F(OfxRender, fieldsStretchedByTheHostTakeTheirOwnRowsOnly) {
    Shot shot;
    const MemoryImage expected = shot.rendered();
    for (const auto& [field, first] : {std::pair{"OfxFieldLower", 0}, {"OfxFieldUpper", 1}}) {
        Layouts layouts(shot);
        layouts.source.field = field;
        Stage stage(&m_plugin, shot, layouts);
        stage.arguments.set(ofx::PROP_FIELD_TO_RENDER, {std::string(field)});
        EXPECT_EQ(stage.render(), ofx::STAT_OK);
        for (int y = 0; y < shot.height(); ++y) {
            const std::uint8_t* const row = stage.output.row(y);
            const std::size_t bytes = 4 * static_cast<std::size_t>(shot.width());
            if (y % 2 == first) {
                EXPECT_EQ(std::memcmp(row, expected.info().row(shot.height() - 1 - y), bytes), 0);
            } else {
                EXPECT_EQ(std::count(row, row + bytes, 0xCD), static_cast<long>(bytes));
            }
        }
    }
}

// Half as many rows: drawn at full height over doubled rows, so that the stroke keeps its shape.
TEST_F(OfxRender, fieldsAtHalfHeightAreRowsOfTheFullFrame) {
    Shot shot;
    const MemoryImage picture = shot.picture();
    const auto bytes = 4 * static_cast<std::size_t>(shot.width());
    for (const auto& [field, first] : {std::pair{"OfxFieldLower", 0}, {"OfxFieldUpper", 1}}) {
        Layouts layouts(shot);
        for (PictureLayout* const layout : {&layouts.source, &layouts.output}) {
            layout->field = field;
            layout->bounds = layout->region = {0, 0, shot.width(), shot.height() / 2};
        }
        Stage stage(&m_plugin, shot, layouts);
        stage.source.takeFrom(picture.info(), 2, first);
        stage.arguments.set(ofx::PROP_FIELD_TO_RENDER, {std::string(field)});
        const MemoryImage doubled = shot.picture();
        for (int y = 0; y < shot.height(); ++y) {
            std::memcpy(doubled.info().row(shot.height() - 1 - y),
                        picture.info().row(shot.height() - 1 - (y / 2 * 2 + first)), bytes);
        }
        const MemoryImage expected = shot.rendered(doubled);
        EXPECT_EQ(stage.render(), ofx::STAT_OK);
        for (int y = 0; y < shot.height() / 2; ++y) {
            const std::uint8_t* const row =
                expected.info().row(shot.height() - 1 - (2 * y + first));
            EXPECT_EQ(std::memcmp(stage.output.row(y), row, bytes), 0) << field << y;
        }
        EXPECT_TRUE(stage.output.intactOutside(layouts.output.bounds));
    }
}

} // namespace
} // namespace orbel::ofxtest
