#include "drawing/DrawingImport.h"
#include "drawing/ShapeLosses.h"
#include "shapes/PathModel.h"
#include "shapes/SvgParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>
#include <vector>

namespace orbel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* head = R"(<svg xmlns="http://www.w3.org/2000/svg" )"
                             R"(xmlns:xlink="http://www.w3.org/1999/xlink" viewBox="0 0 100 100">)";

struct Box {
    double left, top, right, bottom;
};

/// The boxes of the anchors, as the shape reader reads what was made.
std::vector<Box> boxesOf(const Conversion& conversion) {
    PluginPath_Impl path;
    svg_parser parser;
    parser.setPath(&path);
    parser.parseBuffer(conversion.shape ? conversion.shape->svg : std::string());
    std::vector<Box> boxes;
    for (const auto& outline : path.outlines()) {
        Box box{1e9, 1e9, -1e9, -1e9};
        for (const Vx_PathVertex& v : outline.vertices) {
            box = {std::min(box.left, v.x), std::min(box.top, v.y), std::max(box.right, v.x),
                   std::max(box.bottom, v.y)};
        }
        boxes.push_back(box);
    }
    return boxes;
}

Conversion import(const std::string& body, const ImportOptions& options = {}) {
    return importDrawing(head + body + "</svg>", options);
}

struct Case {
    std::string body;
    std::vector<Box> boxes;
};

TEST(DrawingImport, showsWhatABrowserShows) {
    const std::vector<Case> cases{
        {R"(<g transform='translate(10,5) scale(2)'><rect width="10" height="5"/></g>)",
         {{10, 5, 30, 15}}},
        {R"(<circle cx="50" cy="40" r="20"/>)", {{30, 20, 70, 60}}},
        {R"(<path fill="none" stroke="red" d="M10 50a20 20 0 1140 0"/>)", {{10, 30, 50, 50}}},
        {R"(<path d="M1 1h9v9z M20 20h9v9z"/>)", {{1, 1, 10, 10}, {20, 20, 29, 29}}},
        {R"(<defs><rect id="r" width="8" height="8"/></defs><use xlink:href="#r" x="5"/>)",
         {{5, 0, 13, 8}}},
        {R"(<symbol id="s" viewBox="0 0 2 2"><rect width="2" height="2"/></symbol>)"
         R"(<use xlink:href="#s" x="50" y="50" width="20" height="20"/>)",
         {{50, 50, 70, 70}}},
        {R"(<svg x="10" y="10" width="50" height="20" viewBox="0 0 10 10">)"
         R"(<rect width="10" height="10"/></svg>)",
         {{25, 10, 45, 30}}},
        {R"(<style>.h{display:none} #k{fill:none}</style><rect class="h" width="9" height="9"/>)"
         R"(<rect id="k" width="9" height="9"/><rect x="50" width="9" height="9"/>)",
         {{50, 0, 59, 9}}},
        {R"(<switch><rect systemLanguage="xx" width="5" height="5"/>)"
         R"(<rect width="7" height="7"/></switch>)",
         {{0, 0, 7, 7}}},
        {R"(<rect width="9" height="9" opacity="0"/><g style="opacity:0"><rect width="8" height="8"/>)"
         R"(</g><rect width="7" height="7" fill-opacity="0"/><rect width="6" height="6"/>)",
         {{0, 0, 6, 6}}},
        {R"(<clipPath id="c"><rect width="20" height="20"/></clipPath>)"
         R"(<rect clip-path='url(#c)' x="10" width="30" height="9"/>)"
         R"(<rect clip-path='url(#c)' x="60" width="30" height="9"/>)",
         {{10, 0, 40, 9}}},
        {R"(<rect fill="red" stroke="blue" width="9" height="9"/>)", {{0, 0, 9, 9}}},
        {R"(<rect x="-50" width="9" height="9"/><rect width="0.1" height="0.1"/>)"
         R"(<line x1="5" y1="5" x2="50" y2="50"/><rect x="1" width="9" height="9"/>)",
         {{1, 0, 10, 9}}},
        {R"(<pattern id="p" width="5" height="5" patternUnits="userSpaceOnUse">)"
         R"(<circle r="2"/></pattern><rect fill='url(#p)' width="50" height="50"/>)",
         {{0, 0, 50, 50}}},
        {R"(<rect fill="red" width="9" height="9"/>)"
         R"(<rect x="10" fill="#000" fill-opacity="0.3" width="9" height="9"/>)",
         {{0, 0, 9, 9}, {10, 0, 19, 9}}},
        {R"(<pattern id="p" width="9" height="9" patternUnits="userSpaceOnUse">)"
         R"(<polygon points="0,0 9,0 9,9 0,9"/></pattern><rect fill='url(#p)' width="50" height="50"/>)",
         {{0, 0, 50, 50}}},
        {R"(<style>[data-a^="x"]{display:none} rect[data-a$="y"]{display:inline}</style>)"
         R"(<rect data-a="xz" width="9" height="9"/><rect data-a="xy" width="8" height="8"/>)",
         {{0, 0, 8, 8}}},
        {R"(<style>rect+rect,circle:nth-of-type(2n+1){display:none}</style><rect width="9" height="9"/>)"
         R"(<rect width="8" height="8"/><circle r="5"/><circle cx="20" cy="20" r="10"/><circle r="9"/>)",
         {{0, 0, 9, 9}, {10, 10, 30, 30}}},
        {R"(<rect systemLanguage="xx" width="5" height="5"/><rect requiredExtensions="y" width="5" )"
         R"(height="5"/><switch><foreignObject/><rect systemLanguage="xx, en-GB" width="6" height="6"/>)"
         R"(<rect width="7" height="7"/></switch>)",
         {{0, 0, 6, 6}}},
        {R"(<rect width="1em" height="2ex"/>)", {{0, 0, 16, 16}}},
        {R"(<clipPath id="c" clipPathUnits="objectBoundingBox"><rect width=".5" height="1"/></clipPath>)"
         R"(<rect clip-path='url(#c)' width="9" height="9"/><clipPath id="d"><rect opacity="0" )"
         R"(width="5" height="5"/></clipPath><rect clip-path='url(#d)' width="8" height="9"/>)",
         {{0, 0, 9, 9}, {0, 0, 8, 9}}},
        {R"(<mask id="m"/><rect mask='url(#m)' width="9" height="9"/><filter id="f" width="0"><feFlood/>)"
         R"(</filter><g filter='url(#f)'><rect width="9" height="9"/></g><rect width="7" height="9"/>)",
         {{0, 0, 7, 9}}},
        {R"(<polygon points="5 5-5 5.5.5,9e0"/><rect transform="translate(9" width="7" height="7"/>)",
         {{-5, 5, 5, 9}, {0, 0, 7, 7}}},
        {R"(<svg viewBox="0 0 9" preserveAspectRatio="middle" width="9" height="9"><rect width="9" height="8"/></svg>)",
         {{0, 0, 9, 8}}},
        {R"(<style type="text/x">rect{fill:none}</style><style>@media print{rect{fill:none}}@media screen{)"
         R"(.a{fill:none}}</style><rect class="a" width="9" height="9"/><rect width="8" height="8"/>)",
         {{0, 0, 8, 8}}},
        {R"(<radialGradient id="g" r="0"><stop/></radialGradient><rect width="9" height="9" fill='url(#g)'/>)",
         {{0, 0, 9, 9}}},
        {R"(<symbol id="s" transform='scale(2)'><rect width="9" height="9"/></symbol><use style='transform:translate(0,9px)' )"
         R"(xlink:href="#s" x="5"/>)",
         {{5, 9, 23, 27}}},
        {R"(<rect style='transform:translate(50%,0)' width="9" height="9"/>)"
         R"(<rect style='transform:rotate(90)' transform='scale(2)' width="9" height="9"/>)"
         R"(<rect style='transform:rotate(.25turn)' width="9" height="7"/>)",
         {{50, 0, 59, 9}, {0, 0, 18, 18}, {-7, 0, 0, 9}}},
        {R"(<rect x="20" y="20" width="10" height="20" style="transform:rotate(90deg);)"
         R"(transform-box:fill-box;transform-origin:center"/>)",
         {{15, 25, 35, 35}}},
        {R"(<rect x="20" y="20" width="10" height="20" transform='rotate(90)' transform-origin="20 20"/>)",
         {{0, 20, 20, 30}}},
        {R"(<defs><svg id="v" width="9" height="9" viewBox="0 0 1 1"><rect width="1" height="1"/></svg>)"
         R"(</defs><use xlink:href="#v" width="40" height="40"/>)",
         {{0, 0, 40, 40}}},
        {R"(<style>path{fill:none}</style><clipPath id="c"><text y="50" font-size="50">X</text></clipPath>)"
         R"(<rect clip-path='url(#c)' width="50" height="60"/><g i:knockout="Off"><u:x/></g>)",
         {{0, 0, 50, 60}}},
        {R"(<rect x="-1000000" y="10" width="2000000" height="20"/>)",
         {{-1000000, 10, 1000000, 30}}},
    };
    for (const Case& drawing : cases) {
        const Conversion conversion = import(drawing.body);
        const std::vector<Box> boxes = boxesOf(conversion);
        ASSERT_EQ(boxes.size(), drawing.boxes.size()) << drawing.body << conversion.message;
        for (std::size_t i = 0; i < boxes.size(); ++i) {
            const Box& wanted = drawing.boxes[i];
            const double slack = wanted.right > 1000 ? 100 : 0.01;
            EXPECT_NEAR(boxes[i].left, wanted.left, slack) << drawing.body;
            EXPECT_NEAR(boxes[i].top, wanted.top, slack) << drawing.body;
            EXPECT_NEAR(boxes[i].right, wanted.right, slack) << drawing.body;
            EXPECT_NEAR(boxes[i].bottom, wanted.bottom, slack) << drawing.body;
        }
        EXPECT_THAT(readPlainText(conversion.shape->svg).losses, IsEmpty()) << drawing.body;
    }
}

TEST(DrawingImport, takesWhatTheOptionsSay) {
    const std::string body = R"(<g id="a"><title>One</title><path id="f" d="M60 10h20v20"/></g>)"
                             R"(<path id="s" fill="none" stroke="#0f0" d="M10 10L20 20"/>)"
                             R"(<rect width="100" height="100"/>)";
    const auto idsWith = [&](const ImportOptions& options) {
        std::vector<std::string> ids;
        const Conversion conversion = import(body, options);
        for (const auto& part : conversion.shape->outlines) {
            ids.push_back(part.source.id + (part.closed ? " closed" : ""));
        }
        return ids;
    };
    ImportOptions options;
    EXPECT_THAT(idsWith(options), ElementsAre("f closed", "s", " closed"));
    options.pageRectangles = false;
    EXPECT_THAT(idsWith(options), ElementsAre("f closed", "s"));
    options.closed = ImportOptions::Closed::None;
    EXPECT_THAT(idsWith(options), ElementsAre("f", "s"));
    options.take = ImportOptions::Take::Strokes;
    EXPECT_THAT(idsWith(options), ElementsAre("s"));
    options.take = ImportOptions::Take::Fills;
    EXPECT_THAT(idsWith(options), ElementsAre("f"));
    const auto source = import(body).shape->outlines.front().source;
    EXPECT_EQ(source.title, "One");
    EXPECT_EQ(source.fill, "#000000");
}

TEST(DrawingImport, placesTextLetterByLetter) {
    const auto leftEdges = [](const std::string& text) {
        std::vector<double> edges;
        for (const Box& box : boxesOf(import(text))) {
            edges.push_back(std::round(box.left));
        }
        return edges;
    };
    const std::string plain = R"(<text y="50" font-family="DejaVu Sans" font-size="10" )";
    EXPECT_THAT(leftEdges(plain + R"(x="1 31 61">lll</text>)"), ElementsAre(2, 32, 62));
    EXPECT_THAT(leftEdges(plain + R"(x="0" textLength="90">lll</text>)").back(),
                testing::DoubleNear(88, 1));
    EXPECT_THAT(leftEdges(plain + R"(x="50" text-anchor="end">l</text>)"), ElementsAre(48));
    const auto onPath = boxesOf(
        import(R"(<path id="p" fill="none" d="M20 10V90"/><text font-size="10" )"
               R"(font-family="DejaVu Sans"><textPath xlink:href="#p">l</textPath></text>)"));
    ASSERT_EQ(onPath.size(), 1U);
    EXPECT_NEAR(onPath[0].left, 20, 0.1);
    EXPECT_GT(onPath[0].right - onPath[0].left, onPath[0].bottom - onPath[0].top);
    const auto onShape = boxesOf(
        import(R"(<defs><line id="l" x1="90" y1="50" x2="10" y2="50" pathLength="2"/></defs><text )"
               R"(font-size="10" font-family="DejaVu Sans"><textPath xlink:href="#l" )"
               R"(startOffset="1">l</textPath></text>)"));
    ASSERT_EQ(onShape.size(), 1U);
    EXPECT_NEAR(onShape[0].top, 50, 0.1);
    EXPECT_NEAR(onShape[0].right, 49, 0.5);
    EXPECT_EQ(leftEdges(plain + R"(x="1 50">e&#x301;l</text>)").back(), 8); // the mark took the 50
    EXPECT_GT(leftEdges(plain + R"(x="1" unicode-bidi="bidi-override" direction="rtl" )" +
                        R"(text-anchor="end">lo</text>)")
                  .front(),
              leftEdges(plain + R"(x="1">lo</text>)").front());
    EXPECT_THAT(leftEdges(R"(<style>path{fill:none}</style>)" + plain + R"(x="1">l</text>)"),
                ElementsAre(2));
    EXPECT_THAT(
        leftEdges(plain + R"(x="1" textLength="93">ll<tspan x="1" y="90">ll</tspan></text>)"),
        ElementsAre(2, 32, 2, 32)); // lines share the length
    EXPECT_THAT(leftEdges(plain + R"(x="1">l<tspan textLength="40">ll</tspan>l</text>)"),
                ElementsAre(2, 5, 42, 79));
    EXPECT_THAT(leftEdges(plain + R"(x="50" dx="10" text-anchor="end">l</text>)"), ElementsAre(58));
    EXPECT_THAT(
        import(plain + R"(><tspan><textPath xlink:href="#p">l</textPath></tspan></text>)").shape,
        testing::Eq(std::nullopt));
    EXPECT_THAT(import(plain + ">a<text>b</text></text>").shape->outlines.size(), 2U);
    EXPECT_THAT(import(plain + ">a&#x10FFFD;</text>").shape->notes.front(), HasSubstr("U+10FFFD"));
}

/// Boxes to a tenth, and what is noted.
std::string pictured(const std::string& body) {
    const Conversion conversion = import(body);
    std::string text;
    for (const Box& box : boxesOf(conversion)) {
        for (const double side : {box.left, box.top, box.right, box.bottom}) {
            char number[32];
            std::snprintf(number, sizeof number, "%.1f ", std::round(side * 10) / 10 + 0.0);
            text += number;
        }
        text.back() = ';';
    }
    for (const std::string& note :
         conversion.shape ? conversion.shape->notes : std::vector{conversion.message}) {
        text += note + ';';
    }
    return text;
}

TEST(DrawingImport, drawsLettersWithAllTheyWear) {
    const std::string mono = "font-family='DejaVu Sans Mono' font-size='20' ";
    const std::string sans = "font-family='DejaVu Sans' font-size='20' ";
    const std::vector<std::pair<std::string, std::string>> cases{
        {"<text " + mono + "x='10' y='40'>H</text>", "11.3 25.4 20.7 40.0;"},
        {"<text " + mono + "x='10' y='40' rotate='90'>H</text>", "10.0 41.3 24.6 50.7;"},
        {"<text " + mono + "x='10' y='40' baseline-shift='5'>H</text>", "11.3 20.4 20.7 35.0;"},
        {"<text " + mono + "x='50' y='40' writing-mode='vertical-rl'>H</text>",
         "43.1 41.3 57.7 50.7;"},
        {"<text " + mono + "y='40' textLength='36' lengthAdjust='spacingAndGlyphs'>H</text>",
         "4.0 25.4 32.0 40.0;"},
        {"<text " + mono + "y='40' transform='translate(30 5)'>H</text>", "31.3 30.4 40.7 45.0;"},
        {"<text " + mono + "y='40' text-decoration='underline'>HH</text>",
         "0.0 40.0 24.1 40.8;1.3 25.4 10.7 40.0;13.4 25.4 22.7 40.0;"},
        {"<text " + mono + "y='40' text-decoration='overline'>H</text>",
         "0.0 21.0 12.0 21.9;1.3 25.4 10.7 40.0;"},
        {"<text " + mono + "y='40' text-decoration='line-through' x='0 40'>HH</text>",
         "1.3 25.4 10.7 40.0;41.3 25.4 50.7 40.0;0.0 34.4 12.0 35.3;40.0 34.4 52.0 35.3;"},
        {"<text " + mono +
             "y='40' text-decoration='underline' rotate='90' baseline-shift='5'>H</text>",
         "-0.8 35.0 0.0 47.0;0.0 36.3 14.6 45.7;"},
        {"<text " + mono +
             "y='40'>H<tspan opacity='0'>H</tspan><tspan fill='none'>H</tspan>H</text>",
         "1.3 25.4 10.7 40.0;37.5 25.4 46.8 40.0;"},
        {"<text " + mono +
             "y='40' visibility='hidden'>H<tspan visibility='visible'>H</tspan></text>",
         "13.4 25.4 22.7 40.0;"},
        {"<text " + mono +
             "y='40'>H<tspan font-family='DejaVu Sans' font-weight='bold'>I</tspan>"
             "<tspan font-size='10'>H</tspan>H</text>",
         "1.3 25.4 10.7 40.0;13.9 25.4 17.6 40.0;20.2 32.7 24.8 40.0;26.8 25.4 36.2 40.0;"},
        {"<text " + sans + "y='40'>IVAI</text>",
         "2.0 25.4 3.9 40.0;6.1 25.4 19.4 40.0;22.5 27.4 27.8 34.6;18.5 25.4 31.8 40.0;33.9 25.4 "
         "35.9 40.0;"},
        {"<text " + sans + "y='40' style='font-kerning:none'>IVAI</text>",
         "2.0 25.4 3.9 40.0;6.1 25.4 19.4 40.0;23.7 27.4 29.1 34.6;19.7 25.4 33.1 40.0;35.2 25.4 "
         "37.2 40.0;"},
        {"<text " + sans + "y='40'>fi</text>", "0.5 24.8 10.7 40.0;8.9 24.8 10.7 27.1;"},
        {"<text " + sans + "y='40' letter-spacing='1'>fi</text>",
         "0.5 24.8 7.4 40.0;9.9 29.1 11.7 40.0;9.9 24.8 11.7 27.1;"},
        {"<text " + sans + "x='50' y='40'>א</text>", "51.8 29.1 61.6 40.0;"},
        {"<text font-family='None, Nor This' "
         "y='40'>&#x10FFF0;&#x10FFF1;&#x10FFF2;&#x10FFF3;&#x10FFF4;&#x10FFF5;"
         "&#x10FFF6;&#x10FFF7;</text><rect width='9' height='9'/>",
         "0.0 0.0 9.0 9.0;not installed, so other fonts are used: None;no installed font has "
         "U+10FFF0, U+10FFF1, U+10FFF2, U+10FFF3, U+10FFF4, U+10FFF5, U+10FFF6, U+10FFF7: left "
         "out;"},
        {"<text font-family='None, DejaVu Sans' "
         "y='40'>&#x10FFF0;&#x10FFF1;&#x10FFF2;&#x10FFF3;&#x10FFF4;&#x10FFF5;"
         "&#x10FFF6;&#x10FFF7;&#x10FFF8;</text><rect width='9' height='9'/>",
         "0.0 0.0 9.0 9.0;no installed font has U+10FFF0, U+10FFF1, U+10FFF2, U+10FFF3, U+10FFF4, "
         "U+10FFF5, U+10FFF6, U+10FFF7 and others: left out;"},
    };
    for (const auto& [body, picture] : cases) {
        EXPECT_EQ(pictured(body), picture) << body;
    }
}

std::string nested(int depth) {
    std::string groups;
    for (int i = 0; i < depth; ++i) {
        groups += "<g>";
    }
    for (int i = 0; i < depth; ++i) {
        groups += "</g>";
    }
    return groups;
}

TEST(DrawingImport, takesWhatOtherReadersRefuse) {
    const std::string picture(std::size_t{12} << 20, 'A');
    const std::vector<std::pair<std::string, std::string>> cases{
        {"<image width='9' height='9' xlink:href='data:image/png;base64," + picture + "'/>",
         "1 picture has no outlines"},
        {"<style>@font-face{src:url(\"data:font/woff;base64," + picture + "\")}</style>", ""},
        {"<g i:knockout='Off'/><x:y xmlns:x='&amp;ns;'/>", ""},
        {"<text y='50' font-family='No Such Font, Nor This'>a</text>",
         "not installed, so other fonts are used: No Such Font"},
        {"<style>g + g{fill:red}</style>", "a style sheet counts elements"},
        {"<svg width='100' height='20030%' viewBox='0 0 100 100'>"
         "<rect width='3' height='3'/></svg>",
         "clips are not heeded"}, // the renderer falls over it
    };
    for (const auto& [body, note] : cases) {
        const Conversion conversion = import(body + "<rect width='5' height='5'/>");
        ASSERT_TRUE(conversion.shape) << body.substr(0, 90) << conversion.message;
        const auto& notes = conversion.shape->notes;
        EXPECT_EQ(notes.empty(), note.empty()) << note;
        EXPECT_THAT(notes.empty() ? "" : notes.front(), HasSubstr(note));
    }
}

TEST(DrawingImport, refusesInOneSentence) {
    std::string bomb = "<g id='a0'><path d='M0 0h1v1z'/></g>";
    for (int i = 1; i < 10; ++i) {
        bomb += "<g id='a" + std::to_string(i) + "'>";
        for (int k = 0; k < 10; ++k) {
            bomb += "<use xlink:href='#a" + std::to_string(i - 1) + "'/>";
        }
        bomb += "</g>";
    }
    ImportOptions hasty;
    hasty.seconds = 1;
    EXPECT_FALSE(import(bomb, hasty).shape);
    std::string many;
    for (int i = 0; i < 1000000; ++i) {
        many += "<path d='M9 9h9v9z'/>";
    }
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(import(many, hasty).shape);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", "empty"},
        {"hello", "no readable SVG"},
        {"<html/>", "no SVG drawing"},
        {std::string(head) + "</svg>", "nothing in the drawing"},
        {std::string(head) + "<path d='M NaN 1 L inf 5'/></svg>", "nothing in the drawing"},
        {std::string(head) + "<g transform='scale(0)'><rect width='5' height='5'/></g></svg>",
         "nothing in the drawing"},
        {"<svg xmlns='http://www.w3.org/2000/svg' width='0' height='5'/>", "no usable size"},
        {"<!DOCTYPE svg [<!ENTITY a 'xx'><!ENTITY b '&a;&b;'>]><svg>&b;</svg>", "no readable SVG"},
        {"\x1f\x8b\x08 and so on", "damaged"},
        {std::string(head) + "<text>&#x10FFFD;</text></svg>", "U+10FFFD"},
        {std::string(head) + "<rect width='.1' height='.1'/></svg>", "--smallest 0"},
        {std::string(head) + "<rect width='5", "no readable SVG"},
        {std::string(head) + nested(100000) + "</svg>", "depth"},
    };
    for (const auto& [drawing, message] : cases) {
        const Conversion conversion = importDrawing(drawing, {});
        EXPECT_FALSE(conversion.shape) << drawing;
        EXPECT_THAT(conversion.message, HasSubstr(message));
    }
}

TEST(DrawingImport, opensNothingOutside) {
    const Conversion conversion = importDrawing(
        "<!DOCTYPE svg [<!ENTITY a SYSTEM 'file:///etc/hostname'>]>" + std::string(head) +
            "<text y='50'>&a;</text><use xlink:href='/etc/passwd#a'/><rect width='5' height='5'/>"
            "</svg>",
        {});
    ASSERT_TRUE(conversion.shape) << conversion.message;
    EXPECT_EQ(conversion.shape->outlines.size(), 1U);
}

} // namespace
} // namespace orbel
